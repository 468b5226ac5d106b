// Counts what was checked and what failed; the status of the program says how it went.
let checks = 0;
let failures = 0;

export function check(passed, text, details = "") {
  checks += 1;
  if (passed) return;
  failures += 1;
  console.error(`FAILED: ${text}${details ? `\n  ${details}` : ""}`);
}

// Ends the program; nothing checked is a failure too.
export function finish(subject) {
  console.log(`${subject}: ${checks} checks, ${failures} failed`);
  process.exit(checks > 0 && failures === 0 ? 0 : 1);
}
