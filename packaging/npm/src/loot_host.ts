// A running host: its address, and what a test does with it.
import { ApiFailure, clientOf, type Client } from "./api/client.js";
import type { Given, Result, Schemas } from "./api/types.js";
import { EventStream } from "./event_stream.js";
import { HeldCall, type Taken } from "./held_call.js";
import type { Program } from "./program.js";
import type { Known, ResourceEvent, ResourcePath } from "./resource_types.js";

export type Added = Schemas["HostNextResult"]["added"];
type WaitBody = NonNullable<Given<"/_host/wait", "post">["body"]>;
/** `where` is what is at JSON pointers into the event, `after` the id of an event; see POST /_host/wait. */
export type WaitCondition = Omit<WaitBody, "path">;

const defaultMilliseconds = 30_000;

export class LootHost {
  /** Without a slash at its end. */
  readonly url: string;
  /** A request of the plugin or a control of the host, typed by the API document. Throws ApiFailure when it is refused. */
  readonly call: Client["call"];
  /** The same with status and headers. */
  readonly ask: Client["ask"];
  private readonly client: Client;
  private readonly events: EventStream;
  private readonly taken: Taken = new Set();

  /** Made by startLootHost. */
  constructor(private readonly program: Program) {
    this.url = program.url;
    this.client = clientOf(this.url);
    this.call = this.client.call;
    this.ask = this.client.ask;
    this.events = new EventStream(this.url);
  }

  /** Waits until nothing is left to do. */
  async idle(): Promise<void> {
    await this.call("post", "/_host/idle");
  }

  /** Starts world and plugin from scratch; resolves when the plugin has settled. */
  async reset(): Promise<void> {
    await this.call("post", "/_host/reset");
    this.taken.clear();
    await this.settle();
  }

  /** Chooses what the next crafts of a recipe give. */
  nextResult(recipe: string, added: Added, times = 1): Promise<Result<"/_host/next-result", "post">> {
    return this.call("post", "/_host/next-result", { body: { recipe, added, times } });
  }

  /** Holds the next call of the service's method; "*" matches any part of its name. */
  async hold(method: string, milliseconds = defaultMilliseconds): Promise<HeldCall> {
    for (const { id } of await this.call("get", "/_host/held")) this.taken.add(id);
    const rule = { service: method, action: "hold" as const, times: 1 };
    const { rules } = await this.call("post", "/_host/faults", { query: { first: true }, body: rule });
    return new HeldCall(this.client, method, rules[0]?.id, this.taken, milliseconds);
  }

  /** The id of the newest event: what comes after it is found by wait, also when it came before the wait. */
  async lastEvent(): Promise<number> {
    return (await this.call("get", "/_host/health")).events.last;
  }

  /** Resolves with the first event at the path that fits. */
  async wait<P extends ResourcePath>(path: Known<P>, condition: WaitCondition = {}): Promise<ResourceEvent<P>> {
    const { id, event } = await this.call("post", "/_host/wait", { body: { path, ...condition } });
    return { id, ...(event as object) } as ResourceEvent<P>;
  }

  /** Calls back for each event at the path. Resolves when no further one is missed, with what ends it. */
  subscribe<P extends ResourcePath>(path: Known<P>, callback: (event: ResourceEvent<P>) => void): Promise<() => void> {
    return this.events.follow(path, (event) => callback(event as unknown as ResourceEvent<P>));
  }

  /** Ends the host in order; further calls do nothing. Throws LootHostFailure when it had a failure. */
  async stop(): Promise<void> {
    this.events.close();
    await this.program.stop();
  }

  /** Waits as long as anything happens by itself. Resolves with why the plugin is not ready; with nothing when it is. */
  async settle(): Promise<string[]> {
    // The first look begins what it looks for.
    await this.notReady();
    const left = await this.idle().catch((failure: unknown) => {
      if (failure instanceof ApiFailure && failure.reply) return failure.message; // the clock is frozen, the service is slow
      throw failure;
    });
    const reasons = await this.notReady();
    return left !== undefined && reasons.length > 0 ? [left, ...reasons] : reasons;
  }

  private async notReady(): Promise<string[]> {
    const response = await fetch(`${this.url}/_host/ready`);
    const { checks } = (await response.json()) as Result<"/_host/ready", "get">;
    return checks.flatMap(({ ready, reason }) => (ready ? [] : [reason ?? ""]));
  }
}
