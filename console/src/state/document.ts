// The host's API document: what can be asked of it.
import { computed, signal } from "@preact/signals";
import { call } from "../api/client";
import type { Method } from "../api/types";
import { connections } from "./stream";

export interface Schema {
  $ref?: string;
  type?: string | string[];
  description?: string;
  format?: string;
  enum?: unknown[];
  const?: unknown;
  default?: unknown;
  items?: Schema;
  properties?: Record<string, Schema>;
  required?: string[];
  additionalProperties?: Schema | boolean;
  oneOf?: Schema[];
  anyOf?: Schema[];
}
export interface Parameter {
  name: string;
  in: "path" | "query" | "header";
  required?: boolean;
  description?: string;
  schema: Schema;
}
interface Content {
  [type: string]: { schema?: Schema };
}
export interface Operation {
  method: Uppercase<Method>;
  path: string;
  operationId: string;
  summary: string;
  description: string;
  tag: string;
  parameters: Parameter[];
  body: { required: boolean; schema: Schema } | undefined;
  response: Content | undefined;
}
interface RawOperation {
  operationId: string;
  summary?: string;
  description?: string;
  tags?: string[];
  parameters?: Parameter[];
  requestBody?: { required?: boolean; content: Content };
  responses: Record<string, { content?: Content }>;
}
interface Document {
  paths: Record<string, Partial<Record<Method, RawOperation>>>;
  components: { schemas: Record<string, Schema> };
}

const methods: Method[] = ["get", "post", "put", "delete"];
export const document = signal<Document | undefined>(undefined);

export const operations = computed<Operation[]>(() => {
  const list: Operation[] = [];
  for (const [path, byMethod] of Object.entries(document.value?.paths ?? {})) {
    for (const method of methods) {
      const raw = byMethod[method];
      if (!raw) continue;
      const content = raw.requestBody?.content["application/json"];
      list.push({
        method: method.toUpperCase() as Uppercase<Method>,
        path,
        operationId: raw.operationId,
        summary: raw.summary ?? "",
        description: raw.description ?? "",
        tag: raw.tags?.[0] ?? "",
        parameters: raw.parameters ?? [],
        body: content?.schema ? { required: raw.requestBody?.required ?? false, schema: content.schema } : undefined,
        response: raw.responses["200"]?.content,
      });
    }
  }
  return list;
});

export function resolve(schema: Schema): Schema {
  let found = schema;
  for (let steps = 0; found.$ref && steps < 8; steps++) {
    found = document.value?.components.schemas[found.$ref.split("/").at(-1) ?? ""] ?? {};
  }
  return found;
}

const typeOf = (schema: Schema) => (Array.isArray(schema.type) ? schema.type[0] : schema.type);

// A value that fits the schema, to be changed by hand.
export function exampleOf(schema: Schema, depth = 0): unknown {
  const found = resolve(schema);
  if (found.default !== undefined) return found.default;
  if (found.const !== undefined) return found.const;
  if (found.enum) return found.enum[0];
  const choice = found.oneOf?.[0] ?? found.anyOf?.[0];
  if (choice) return exampleOf(choice, depth);
  switch (typeOf(found)) {
    case "object": {
      const entries = depth > 4 ? [] : Object.entries(found.properties ?? {});
      return Object.fromEntries(entries.map(([name, member]) => [name, exampleOf(member, depth + 1)]));
    }
    case "array":
      return found.items && depth <= 4 ? [exampleOf(found.items, depth + 1)] : [];
    case "boolean":
      return false;
    case "integer":
    case "number":
      return 0;
    case "string":
      return "";
    default:
      return null;
  }
}

// The schema's name, or its type in short.
export function nameOf(schema: Schema | undefined): string {
  if (!schema) return "";
  if (schema.$ref) return schema.$ref.split("/").at(-1) ?? "";
  if (schema.items) return `${nameOf(schema.items)}[]`;
  return typeOf(schema) ?? "any";
}

export function startDocument(): void {
  connections.subscribe((count) => {
    if (count > 0) void call("get", "/_host/openapi.json").then((read) => (document.value = read as unknown as Document));
  });
}
