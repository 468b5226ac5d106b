// Which resources there are and what each holds, from the host's API document.
import type { PathOf, Result } from "./api/types.js";

type Template = Extract<PathOf<"get">, `/tav-loot/${string}`>;

type FitsSegment<Segment extends string, Of extends string> = Of extends `{${string}}` ? true : Segment extends Of ? true : false;

// Segment by segment: a captured value holds no slash.
type Fits<Path extends string, Of extends string> = Of extends `${infer Head}/${infer Rest}`
  ? Path extends `${infer First}/${infer Others}`
    ? FitsSegment<First, Head> extends true
      ? Fits<Others, Rest>
      : false
    : false
  : Path extends `${string}/${string}`
    ? false
    : FitsSegment<Path, Of>;

/** The template of a path: "/a/{id}" of "/a/7". */
export type TemplateOf<Path extends string> = { [T in Template]: Fits<Path, T> extends true ? T : never }[Template];

type Filled<T extends string> = T extends `${infer Head}{${string}}${infer Rest}` ? `${Head}${string}${Filled<Rest>}` : T;

/** "/tav-loot/v1/ready", `/tav-loot/v1/player-loot/${string}`, ... */
export type ResourcePath = Filled<Template>;

/** `Path` where it is that of a resource. */
export type Known<Path extends string> = [TemplateOf<Path>] extends [never] ? never : Path;

/** What is published at a path. `id` is that of the event stream. */
export type ResourceEvent<Path extends string> =
  | { id: number; uri: string; eventType: "Create" | "Update"; data: Result<TemplateOf<Path>, "get"> }
  | { id: number; uri: string; eventType: "Delete" };
