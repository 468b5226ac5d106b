// Sends requests to a host, typed by its API document.
import type { Given, Method, PathOf, Problem, Result } from "./types.js";

// What a request came to, whether it succeeded or not.
export interface Reply {
  status: number;
  milliseconds: number;
  headers: [string, string][];
  text: string;
}

export class ApiFailure extends Error {
  constructor(
    readonly status: number,
    detail: string,
    readonly reply?: Reply,
  ) {
    super(detail);
  }
}

interface LooseGiven {
  path?: Record<string, unknown>;
  query?: Record<string, unknown>;
  body?: unknown;
}

// "/a/{id}" with its values, and the query.
export function targetOf(template: string, given: LooseGiven): string {
  const path = template.replace(/{(\w+)}/g, (_, name: string) => encodeURIComponent(String(given.path?.[name] ?? "")));
  const query = new URLSearchParams();
  for (const [name, value] of Object.entries(given.query ?? {})) {
    if (value !== undefined && value !== "") query.set(name, String(value));
  }
  const text = query.toString();
  return text ? `${path}?${text}` : path;
}

export interface Sent {
  body: string;
  type?: string;
}

export async function send(method: string, target: string, sent?: Sent): Promise<Reply> {
  const start = performance.now();
  const headers: Record<string, string> = { Accept: "application/json" };
  if (sent) headers["Content-Type"] = sent.type ?? "application/json";
  const response = await fetch(target, { method, headers, body: sent?.body ?? null, cache: "no-store" });
  const text = await response.text();
  return {
    status: response.status,
    milliseconds: performance.now() - start,
    headers: [...response.headers.entries()],
    text,
  };
}

function detailOf(reply: Reply): string {
  try {
    return (JSON.parse(reply.text) as Problem).detail;
  } catch {
    return reply.text || `status ${reply.status}`;
  }
}

export interface Returned<T> {
  result: T;
  reply: Reply;
}

export const headerOf = (reply: Reply | undefined, name: string) => reply?.headers.find(([key]) => key === name)?.[1];

export interface Client {
  // The result of an operation with its reply. Throws ApiFailure with what the host says went wrong.
  ask<M extends Method, P extends PathOf<M>>(method: M, path: P, given?: Given<P, M>): Promise<Returned<Result<P, M>>>;
  // The same without the reply.
  call<M extends Method, P extends PathOf<M>>(method: M, path: P, given?: Given<P, M>): Promise<Result<P, M>>;
}

// For the host at this address, which ends without a slash; "" is the one that served the page.
export function clientOf(address: string): Client {
  async function ask<M extends Method, P extends PathOf<M>>(method: M, path: P, given?: Given<P, M>) {
    const loose = (given ?? {}) as LooseGiven;
    const sent = loose.body === undefined ? undefined : { body: JSON.stringify(loose.body) };
    let reply: Reply;
    try {
      reply = await send(method.toUpperCase(), address + targetOf(path, loose), sent);
    } catch {
      throw new ApiFailure(0, "The host does not respond.");
    }
    if (reply.status >= 400) throw new ApiFailure(reply.status, detailOf(reply), reply);
    return { result: (reply.text ? JSON.parse(reply.text) : undefined) as Result<P, M>, reply };
  }
  return { ask, call: async (method, path, given) => (await ask(method, path, given)).result };
}

export const { ask, call } = clientOf("");
