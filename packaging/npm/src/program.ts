// Runs the host's program, which ends with this process: it follows its standard input.
import { spawn, type ChildProcessByStdio } from "node:child_process";
import { once } from "node:events";
import type { Socket } from "node:net";
import { createInterface } from "node:readline";
import type { Readable, Writable } from "node:stream";
import { LootHostFailure } from "./failure.js";

const keptLines = 20;
const stopMilliseconds = 10_000;

type Child = ChildProcessByStdio<Writable, Readable, Readable>;

export class Program {
  url = "";
  private readonly lines: string[] = [];
  private readonly child: Child;
  private readonly ended: Promise<string>;
  private stopped: Promise<void> | undefined;

  private constructor(
    private readonly path: string,
    options: readonly string[],
    log: (line: string) => void,
  ) {
    const command = ["--until-stdin-closes", ...options];
    this.child = spawn(path, command, { stdio: ["pipe", "pipe", "pipe"] });
    this.child.stdin.on("error", () => {}); // it has ended, which "close" reports
    this.ended = new Promise((resolve) => {
      this.child.once("error", (error: NodeJS.ErrnoException) => resolve(this.whyNotRun(error)));
      this.child.once("close", (code, signal) => resolve(code === 0 ? "" : `It ended with ${signal ?? `status ${code}`}.`));
    });
    createInterface(this.child.stderr).on("line", (line) => {
      this.lines.push(line);
      if (this.lines.length > keptLines) this.lines.shift();
      log(line);
    });
  }

  // A program that is ready; throws LootHostFailure when it does not get so.
  static async start(
    path: string,
    options: readonly string[],
    milliseconds: number,
    log: (line: string) => void,
  ): Promise<Program> {
    const program = new Program(path, options, log);
    let timer: NodeJS.Timeout | undefined;
    const late = new Promise<string>((resolve) => {
      timer = setTimeout(() => resolve(`It was not ready after ${milliseconds} ms.`), milliseconds);
    });
    const ready = once(createInterface(program.child.stdout), "line").then(([line]) => program.readReady(line as string));
    const failed = await Promise.race([ready, late, program.ended.then((why) => why || "It ended.")]);
    clearTimeout(timer);
    if (failed !== undefined) {
      program.child.kill("SIGKILL");
      throw program.failure("The loot host did not start.", failed);
    }
    program.letGo();
    return program;
  }

  // Ends it in order. Throws LootHostFailure when it has ended with a failure.
  stop(): Promise<void> {
    this.stopped ??= this.end();
    return this.stopped;
  }

  // Takes the address from the line that says so; returns what is wrong with another.
  private readReady(line: string): string | undefined {
    try {
      this.url = (JSON.parse(line) as { url: string }).url.replace(/\/$/, "");
      return undefined;
    } catch {
      return `${this.path} is another program: it began with "${line}".`;
    }
  }

  // A host that was not stopped does not keep this process from its end.
  private letGo(): void {
    this.child.unref();
    for (const stream of this.child.stdio) (stream as unknown as Socket | null)?.unref();
  }

  private async end(): Promise<void> {
    this.child.ref();
    this.child.stdin.end();
    const timer = setTimeout(() => this.child.kill("SIGKILL"), stopMilliseconds);
    const failed = await this.ended;
    clearTimeout(timer);
    if (failed) throw this.failure("The loot host did not stop in order.", failed);
  }

  private failure(what: string, why: string): LootHostFailure {
    const last = this.lines.length > 0 ? `\nIts last lines:\n${this.lines.join("\n")}` : "";
    return new LootHostFailure(`${what} ${why}${last}`);
  }

  private whyNotRun(error: NodeJS.ErrnoException): string {
    if (error.code === "ENOENT") return `There is no program ${this.path}.`;
    return `${this.path} cannot be run: ${error.message}.`;
  }
}
