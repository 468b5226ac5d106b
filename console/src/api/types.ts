// Names for the types that the host's API document describes, and for what each operation takes and returns.
import type { components, paths } from "./loot-api.js";

export type Schemas = components["schemas"];
export type PlayerLoot = Schemas["PlayerLoot"];
export type PlayerLootUpdate = Schemas["PlayerLootUpdate"];
export type PlayerLootDelta = Schemas["PlayerLootDelta"];
export type ContextMenu = Schemas["ContextMenu"];
export type Recipe = Schemas["Recipe"];
export type LootItem = Schemas["LootItem"];
export type Health = Schemas["HostHealth"];
export type Problem = Schemas["Problem"];

export type Method = "get" | "put" | "post" | "delete";
// The paths that have the method.
export type PathOf<M extends Method> = {
  [P in keyof paths]: paths[P][M] extends { responses: unknown } ? P : never;
}[keyof paths];

type Operation<P extends keyof paths, M extends Method> = NonNullable<paths[P][M]>;
type Content<R> = R extends { content: { "application/json": infer Body } } ? Body : undefined;
// The body of a success.
export type Result<P extends keyof paths, M extends Method> =
  Operation<P, M> extends { responses: { 200: infer R } } ? Content<R> : undefined;

type Part<P extends keyof paths, M extends Method, Name extends "path" | "query"> =
  Operation<P, M> extends { parameters: infer G } ? (Name extends keyof G ? Exclude<G[Name], undefined> : never) : never;
type Optional<Key extends string, Value> = [Value] extends [never] ? object : { [K in Key]?: Value };
type Required<Key extends string, Value> = [Value] extends [never] ? object : { [K in Key]: Value };
type Body<P extends keyof paths, M extends Method> =
  Operation<P, M> extends { requestBody?: infer R } ? Content<NonNullable<R>> : never;

// What an operation is given.
export type Given<P extends keyof paths, M extends Method> = Required<"path", Part<P, M, "path">> &
  Optional<"query", Part<P, M, "query">> &
  Optional<"body", Exclude<Body<P, M>, undefined>>;
