// Compares what the host really returns with the document: node responses.mjs URL
// Every operation is called and must succeed with a body of its schema; refusals are problems; the events
// fit the schema of the resource they are about.
import { check, finish } from "./report.mjs";
import { first, refusals, samples } from "./samples.mjs";
import { readSchemas } from "./schemas.mjs";

const [url] = process.argv.slice(2);
const document = await (await fetch(`${url}/_host/openapi.json`)).json();
const misfit = readSchemas(document);

async function call(path, method, operation) {
  const sample = samples[operation.operationId] ?? {};
  const target = path.replace(/{(\w+)}/g, (_, name) => encodeURIComponent(sample.path?.[name] ?? "?"));
  const query = new URLSearchParams(sample.query ?? {}).toString();
  const response = await fetch(`${url}${target}${query && `?${query}`}`, {
    method: method.toUpperCase(),
    headers: sample.type ? { "Content-Type": sample.type } : {},
    body: sample.body,
  });
  const text = await response.text();
  if (sample.status) return check(response.status === sample.status, `${target} returns ${sample.status}`, text);
  const described = operation.responses[response.status];
  const what = `${operation.operationId} (${method} ${target})`;
  check(described !== undefined, `${what} returns a status of the document`, `${response.status} ${text}`);
  if (!described?.content) return check(described === undefined || text === "", `${what} has no body`, text);
  const type = response.headers.get("content-type");
  check(described.content[type] !== undefined, `${what} returns a content type of the document`, type);
  const place = ["paths", path, method, "responses", `${response.status}`, "content", type, "schema"];
  if (described.content[type]) {
    const wrong = misfit(place, type.startsWith("application/json") ? JSON.parse(text) : text);
    check(wrong === "", `${what} returns what the document says`, wrong);
  }
}

async function callEverything() {
  const operations = Object.entries(document.paths)
    .flatMap(([path, methods]) => Object.entries(methods).map(([method, operation]) => ({ path, method, operation })))
    .filter(({ operation }) => !operation.responses[200]?.content?.["text/event-stream"]);
  const place = ({ operation }) => (first.indexOf(operation.operationId) + 1 || first.length + 1);
  operations.sort((a, b) => place(a) - place(b));
  check(operations.length > 24, "there are operations of the plugin and of the host");
  for (const { path, method, operation } of operations) await call(path, method, operation);
  // With a frozen clock what waits for the platform would wait for ever.
  const headers = { "Content-Type": "application/json" };
  await fetch(`${url}/_host/clock`, { method: "PUT", headers, body: '{"mode":"real"}' });
}

async function callInVain() {
  for (const { status, method, path, type, body } of refusals) {
    const response = await fetch(`${url}${path}`, { method, headers: type ? { "Content-Type": type } : {}, body });
    const problem = await response.json();
    const both = response.status === status && problem.status === status;
    check(both, `${method} ${path} ${type ?? ""} returns ${status}`, JSON.stringify(problem));
    check(response.headers.get("content-type") === "application/problem+json", `${method} ${path}: a problem`);
    const wrong = misfit(["components", "schemas", "Problem"], problem);
    check(wrong === "", `${method} ${path} returns a Problem`, wrong);
  }
}

// The other content type that the document promises for every result of the plugin.
async function askForMessagePack() {
  const accept = "application/x-msgpack";
  const response = await fetch(`${url}/tav-loot/v1/enabled`, { headers: { Accept: accept } });
  const bytes = Buffer.from(await response.arrayBuffer()).toString("hex");
  check(response.headers.get("content-type") === accept && bytes === "c3", "true comes as MessagePack", bytes);
}

// The messages that are held after an id, as a browser would hand them out.
async function readStream(lastEventId) {
  const leave = new AbortController();
  setTimeout(() => leave.abort(), 1500);
  let text = "";
  try {
    const response = await fetch(`${url}/_host/events`, {
      headers: { "Last-Event-ID": lastEventId },
      signal: leave.signal,
    });
    for await (const piece of response.body) text += Buffer.from(piece).toString("latin1");
  } catch (error) {
    if (error.name !== "AbortError") throw error;
  }
  const frames = text.split("\n\n").slice(0, -1).filter((frame) => frame.startsWith("id: "));
  return frames.map((frame) =>
    Object.fromEntries(frame.split("\n").map((line) => [line.split(": ", 1)[0], line.slice(line.indexOf(": ") + 2)])),
  );
}

const changeOf = (name) => name.replace(/Event$/, "ChangeEvent");

// The schemas whose "uri" fits; all others are not about this resource.
function schemasFor(uri) {
  return document.components.schemas.ResourceEvent.anyOf
    .map(({ $ref }) => $ref.split("/").pop())
    .filter((name) => misfit(["components", "schemas", changeOf(name), "properties", "uri"], uri) === "");
}

async function followEvents() {
  const seen = new Set();
  const messages = await readStream("0");
  for (const message of messages) {
    const data = JSON.parse(Buffer.from(message.data, "latin1").toString("utf8"));
    check(misfit(["components", "schemas", "EventStreamMessage"], message) === "", "it is a message of the stream");
    if (message.event === "reset") {
      const wrong = misfit(["components", "schemas", "ResetEvent"], data);
      check(wrong === "", `event ${message.id} is a ResetEvent`, wrong);
      continue;
    }
    const names = schemasFor(data.uri);
    check(names.length === 1, `${data.uri} is one resource of the document`, names.join(", "));
    for (const name of names) {
      seen.add(name);
      const wrong = misfit(["components", "schemas", name], data);
      check(wrong === "", `event ${message.id} is a ${name}`, wrong);
    }
  }
  check(messages.some((message) => message.event === "reset"), "the reset is an event");
  check(seen.size >= 8, "events of several resources were seen", [...seen].join(", "));
  const [gap] = await readStream("99999999");
  check(gap?.event === "gap", "a place this host never gave gives a gap");
  const wrong = misfit(["components", "schemas", "GapEvent"], JSON.parse(gap?.data ?? "null"));
  check(wrong === "", "the gap is a GapEvent", wrong);
}

await callEverything();
await callInVain();
await askForMessagePack();
await followEvents();
finish("The responses");
