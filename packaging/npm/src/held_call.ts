// One call of the platform's service that the host holds, or will: the next one of a method.
import { setTimeout as pause } from "node:timers/promises";
import { ApiFailure, type Client } from "./api/client.js";
import type { Given, Result } from "./api/types.js";
import { LootHostFailure } from "./failure.js";

type Call = Result<"/_host/held", "get">[number];
type End = NonNullable<Given<"/_host/held/{id}", "post">["body"]>;

const lookMilliseconds = 20;

/** Calls that were there before, or belong to another, by id. */
export type Taken = Set<number>;

function matches(pattern: string, method: string): boolean {
  const parts = pattern.split("*").map((part) => part.replace(/\W/g, "\\$&"));
  return new RegExp(`^${parts.join(".*")}$`).test(method);
}

export class HeldCall {
  private found: Promise<Call> | undefined;

  constructor(
    private readonly client: Client,
    private readonly method: string,
    private readonly rule: number | undefined,
    private readonly taken: Taken,
    private readonly milliseconds: number,
  ) {}

  /** Resolves when the call has come. */
  begun(): Promise<Call> {
    this.found ??= this.find();
    return this.found;
  }

  /** Lets it be carried out now. */
  release = (): Promise<void> => this.end({ action: "release" });
  fail = (error: string): Promise<void> => this.end({ action: "fail", error });
  /** Makes `payload` the method's result; nothing else is done. */
  respond = (payload: unknown): Promise<void> => this.end({ action: "respond", payload });

  private async end(body: End): Promise<void> {
    const { id } = await this.begun();
    await this.client.call("post", "/_host/held/{id}", { path: { id }, body });
  }

  // It is used up: many of them would reach the most rules there may be.
  private async removeRule(): Promise<void> {
    if (this.rule === undefined) return;
    await this.client.call("delete", "/_host/faults/{id}", { path: { id: this.rule } }).catch((failure: unknown) => {
      if (!(failure instanceof ApiFailure && failure.status === 404)) throw failure; // a reset, or another, has removed it
    });
  }

  private async find(): Promise<Call> {
    for (const limit = Date.now() + this.milliseconds; ; await pause(lookMilliseconds)) {
      const calls = await this.client.call("get", "/_host/held");
      const call = calls.find(({ id, method }) => !this.taken.has(id) && matches(this.method, method));
      if (call) {
        this.taken.add(call.id);
        await this.removeRule();
        return call;
      }
      if (Date.now() < limit) continue;
      this.found = undefined;
      throw new LootHostFailure(`No call of ${this.method} came within ${this.milliseconds} ms.`);
    }
  }
}
