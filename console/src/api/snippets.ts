// A request as text that can be pasted elsewhere.

export interface Request {
  method: string;
  template: string;
  path: Record<string, string>;
  query: Record<string, string>;
  body?: string | undefined;
}

const quoted = (text: string) => `'${text.replaceAll("'", "'\\''")}'`;

export function asCurl(method: string, target: string, body?: string): string {
  const parts = ["curl"];
  if (method !== "GET") parts.push("-X", method);
  if (body !== undefined && body !== "") parts.push("-H", quoted("Content-Type: application/json"), "-d", quoted(body));
  parts.push(quoted(location.origin + target));
  return parts.join(" ");
}

const members = (values: Record<string, string>) =>
  Object.entries(values)
    .filter(([, value]) => value !== "")
    .map(([name, value]) => `${JSON.stringify(name)}: ${JSON.stringify(value)}`)
    .join(", ");

// A call with fetch, as a front end writes it.
export function asTypeScript(request: Request, result: string): string {
  const path = request.template.replace(/{(\w+)}/g, (_, name: string) => encodeURIComponent(request.path[name] ?? ""));
  const query = members(request.query);
  const target = query ? `\`\${base}${path}?\${new URLSearchParams({ ${query} })}\`` : `\`\${base}${path}\``;
  const lines = [`const base = ${JSON.stringify(location.origin)};`, `const response = await fetch(${target}, {`];
  lines.push(`  method: ${JSON.stringify(request.method)},`);
  if (request.body) {
    lines.push(`  headers: { "Content-Type": "application/json" },`, `  body: JSON.stringify(${request.body.trim()}),`);
  }
  lines.push(`});`, `if (!response.ok) throw new Error((await response.json()).detail);`);
  lines.push(result ? `const result = (await response.json()) as ${result};` : "");
  return lines.filter(Boolean).join("\n");
}

export async function copy(text: string): Promise<void> {
  await navigator.clipboard.writeText(text);
}
