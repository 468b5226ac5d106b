// The document's schemas, ready to be held against real values. An object may have the members its schema
// names and no others, so that a member which the document forgets is found too.
import Ajv2020 from "ajv/dist/2020.js";

const id = "urn:openapi:document";

// The one object that all parts of "allOf" describe together.
function merged(parts, schemas) {
  const described = parts.map((part) => (part.$ref ? schemas[part.$ref.split("/").pop()] : part));
  return {
    type: "object",
    properties: Object.assign({}, ...described.map((part) => part.properties)),
    required: described.flatMap((part) => part.required ?? []),
  };
}

// A copy of a schema, or of anything that holds schemas, in which every object with named members is closed.
function closed(value, schemas) {
  if (typeof value !== "object" || value === null) return value;
  if (Array.isArray(value)) return value.map((member) => closed(member, schemas));
  if (Array.isArray(value.allOf)) return closed(merged(value.allOf, schemas), schemas);
  const copy = Object.fromEntries(Object.entries(value).map(([name, member]) => [name, closed(member, schemas)]));
  const isObject = copy.type === "object" && typeof copy.properties === "object";
  return isObject && !("additionalProperties" in copy) ? { ...copy, additionalProperties: false } : copy;
}

export function readSchemas(document) {
  const ajv = new Ajv2020({ strict: true, strictTypes: false, strictRequired: true, allErrors: true });
  for (const format of ["int8", "int16", "int32", "int64", "uint8", "uint16", "uint32", "uint64"]) {
    ajv.addFormat(format, { type: "number", validate: Number.isInteger });
  }
  for (const format of ["float", "double"]) ajv.addFormat(format, { type: "number", validate: Number.isFinite });
  ajv.addFormat("date-time", (text) => !Number.isNaN(Date.parse(text)));
  ajv.addVocabulary(["paths", "components", "x-nameSpace"]);
  ajv.addSchema(
    closed({ $id: id, paths: document.paths, components: document.components }, document.components.schemas),
  );

  // Why `value` does not fit what is at the place ["components", "schemas", "Problem"], or nothing.
  return (place, value) => {
    const pointer = place.map((part) => part.replaceAll("~", "~0").replaceAll("/", "~1")).map(encodeURIComponent);
    const reference = `${id}#/${pointer.join("/")}`;
    const validate = ajv.getSchema(reference) ?? ajv.compile({ $ref: reference });
    return validate(value) ? "" : `${ajv.errorsText(validate.errors)} in ${JSON.stringify(value).slice(0, 300)}`;
  };
}
