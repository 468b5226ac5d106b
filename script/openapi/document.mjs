// Checks the document itself: node document.mjs URL ENDPOINTS
// Two public validators find nothing to complain about, every reference leads somewhere, and exactly the
// ENDPOINTS endpoints that the host lists for its plugin are there.
import { createConfig, lintFromString } from "@redocly/openapi-core";
import { Validator } from "@seriousme/openapi-schema-validator";
import { check, finish } from "./report.mjs";

const [url, endpointCount] = process.argv.slice(2);
const text = await (await fetch(`${url}/_host/openapi.json`)).text();
const again = await (await fetch(`${url}/_host/openapi.json`)).text();
const document = JSON.parse(text);
check(JSON.stringify(document).length === text.length, "no member is a duplicate");
check(text === again, "the document is the same each time");
check(document.openapi === "3.1.0", "it is of OpenAPI 3.1");

const validator = new Validator();
const result = await validator.validate(JSON.parse(text));
check(result.valid, "it fits the schema of OpenAPI 3.1", JSON.stringify(result.errors));

// Off: what a private tool of a development machine need not say, and schemas that only name types.
const config = await createConfig({
  extends: ["recommended"],
  rules: {
    "info-license": "off",
    "no-server-example.com": "off",
    "no-unused-components": "off",
    "operation-4xx-response": "off",
  },
});
const source = JSON.stringify(document, null, 1);
// Two templates fit one path, and the first serves it: the recipes of an item that is named "craft".
const known = "`/tav-loot/v1/recipes/initial-item/{lootId}` and `/tav-loot/v1/recipes/{recipeName}/craft`";
const found = await lintFromString({ source, absoluteRef: "openapi.json", config });
const problems = found.filter((p) => !(p.ruleId === "no-ambiguous-paths" && p.message.includes(known)));
check(
  problems.length === 0,
  "the linter has no complaint",
  problems.map((p) => `${p.ruleId}: ${p.message} ${p.location[0]?.pointer ?? ""}`).join("\n  "),
);

function* references(value) {
  if (typeof value !== "object" || value === null) return;
  if (typeof value.$ref === "string") yield value.$ref;
  for (const member of Object.values(value)) yield* references(member);
}
function resolves(reference) {
  const parts = reference.replace(/^#\//, "").split("/");
  return reference.startsWith("#/") && parts.reduce((value, part) => value?.[part], document) !== undefined;
}
const all = new Set(references(document));
check(all.size > 0, "there are references");
for (const reference of all) check(resolves(reference), `${reference} leads somewhere`);

const { endpoints, plugin } = await (await fetch(`${url}/`)).json();
check(endpoints.length === Number(endpointCount), `the host lists ${endpointCount} endpoints`, `${endpoints.length}`);
for (const { method, path, function: name } of endpoints) {
  const operation = document.paths[path]?.[method.toLowerCase()];
  check(operation?.operationId === name, `${method} ${path} is ${name}`, operation?.operationId);
}
const listed = Object.values(document.paths).flatMap((path) => Object.values(path));
const own = listed.filter((operation) => operation.tags.includes(plugin));
check(own.length === endpoints.length, "and nothing else is said to be the plugin's", `${own.length}`);

const help = await (await fetch(`${url}/_host/help`)).json();
check(help.types.length > 0, "Help names types");
for (const { name, fields, values } of help.types) {
  const schema = document.components.schemas[name];
  const members = schema?.enum ?? Object.keys(schema?.properties ?? {});
  const wanted = [...values, ...fields].map((member) => member.name);
  check(JSON.stringify(members) === JSON.stringify(wanted), `${name} has all its members in order`);
}
finish("The document");
