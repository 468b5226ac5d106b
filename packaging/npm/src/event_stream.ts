// The host's live events, handed to those who follow a path. There is one connection while any path is followed; it
// comes back by itself and goes on after the last event that came.
import { get, type IncomingMessage } from "node:http";
import { createInterface } from "node:readline";
import { setTimeout as pause } from "node:timers/promises";
import { LootHostFailure } from "./failure.js";

export interface StreamEvent {
  id: number;
  uri: string;
  eventType: string;
  data?: unknown;
}
type Listener = (event: StreamEvent) => void;

const retryMilliseconds = 100;

export class EventStream {
  private readonly listeners = new Map<string, Set<Listener>>();
  private response: IncomingMessage | undefined;
  private connected: Promise<void> | undefined;
  private lastId: number | undefined;
  private closed = false;

  constructor(private readonly url: string) {}

  // Resolves when no event from then on is missed, with what ends it.
  async follow(uri: string, listener: Listener): Promise<() => void> {
    const ofPath = this.listeners.get(uri) ?? new Set();
    this.listeners.set(uri, ofPath.add(listener));
    try {
      await (this.connected ??= this.connect());
    } catch (failure) {
      this.drop(uri, listener);
      throw failure;
    }
    return () => this.drop(uri, listener);
  }

  close(): void {
    this.closed = true;
    this.listeners.clear();
    this.disconnect();
  }

  private drop(uri: string, listener: Listener): void {
    const ofPath = this.listeners.get(uri);
    if (!ofPath?.delete(listener) || ofPath.size > 0) return;
    this.listeners.delete(uri);
    if (this.listeners.size === 0) this.disconnect();
  }

  private disconnect(): void {
    this.connected = undefined;
    this.lastId = undefined;
    this.response?.destroy();
    this.response = undefined;
  }

  private async connect(): Promise<void> {
    const target = `${this.url}/_host/events${this.lastId === undefined ? "" : `?lastEventId=${this.lastId}`}`;
    const response = await new Promise<IncomingMessage>((resolve, reject) => {
      get(target, { agent: false }, resolve).on("error", () => reject(new LootHostFailure("The loot host has no event stream.")));
    });
    // What the host sends first shows that it follows.
    await new Promise((resolve) => response.once("readable", resolve));
    if (this.closed || this.listeners.size === 0) return void response.destroy();
    this.response = response;
    this.read(response);
  }

  private read(response: IncomingMessage): void {
    let [id, kind] = [0, ""];
    response.on("error", () => {});
    response.once("close", () => void (response === this.response && this.reconnect()));
    createInterface(response).on("line", (line) => {
      if (line.startsWith("id: ")) id = Number(line.slice(4));
      else if (line.startsWith("event: ")) kind = line.slice(7);
      else if (line.startsWith("data: ") && response === this.response) this.deliver(id, kind, line.slice(6));
    });
  }

  private async reconnect(): Promise<void> {
    while (!this.closed && this.listeners.size > 0) {
      await pause(retryMilliseconds);
      this.connected = this.connect();
      if (await this.connected.then(() => true, () => false)) return;
    }
  }

  // A listener that throws does so in a turn of its own.
  private deliver(id: number, kind: string, text: string): void {
    this.lastId = id;
    if (kind === "gap") {
      queueMicrotask(() => {
        throw new LootHostFailure(`Events of the loot host were lost: ${text}`);
      });
    }
    if (kind !== "resource") return;
    const event = JSON.parse(text) as Omit<StreamEvent, "id">;
    for (const listener of this.listeners.get(event.uri) ?? []) queueMicrotask(() => listener({ id, ...event }));
  }
}
