// Short messages of what was done or went wrong. Failures stay until they are closed.
import { signal } from "@preact/signals";
import { Icon } from "./icon";

interface Notice {
  id: number;
  kind: "done" | "failed";
  text: string;
}
const notices = signal<Notice[]>([]);
const shown = 4;
let last = 0;

const close = (id: number) => (notices.value = notices.value.filter((notice) => notice.id !== id));

export function say(kind: Notice["kind"], text: string): void {
  const id = ++last;
  notices.value = [...notices.value.filter((notice) => notice.text !== text), { id, kind, text }].slice(-shown);
  if (kind === "done") setTimeout(() => close(id), 4000);
}

export function Notices() {
  return (
    <div class="notices" role="status" aria-live="polite">
      {notices.value.map((notice) => (
        <div class={`notice ${notice.kind}`} key={notice.id}>
          <Icon name={notice.kind === "done" ? "check" : "warn"} />
          <span>{notice.text}</span>
          <button class="plain small" aria-label="Close the message" onClick={() => close(notice.id)}>
            <Icon name="close" />
          </button>
        </div>
      ))}
    </div>
  );
}
