// Small parts that all views are made of.
import { useSignal } from "@preact/signals";
import type { ComponentChildren } from "preact";
import { useEffect, useId, useRef } from "preact/hooks";
import { copy } from "../api/snippets";
import { route } from "../route";
import { Icon, type IconName } from "./icon";

interface ButtonProps {
  children?: ComponentChildren;
  icon?: IconName;
  kind?: "main" | "danger" | "plain" | "normal";
  label?: string;
  isRunning?: boolean;
  disabled?: boolean;
  title?: string | undefined;
  onClick: () => void;
}

export function Button({ children, icon, kind = "normal", label, isRunning, disabled, title, onClick }: ButtonProps) {
  return (
    <button
      type="button"
      class={`button ${kind}`}
      aria-label={label}
      title={title || label}
      aria-busy={isRunning || undefined}
      disabled={disabled || isRunning}
      onClick={onClick}
    >
      {isRunning ? <span class="spinner" aria-hidden="true" /> : icon && <Icon name={icon} />}
      {children && <span>{children}</span>}
    </button>
  );
}

export function CopyButton({ text, children, label }: { text: () => string; children?: string; label?: string }) {
  const done = useSignal(false);
  const run = () =>
    void copy(text()).then(() => {
      done.value = true;
      setTimeout(() => (done.value = false), 1500);
    });
  return (
    <Button icon={done.value ? "check" : "copy"} kind="plain" label={label ?? `Copy ${children ?? ""}`} onClick={run}>
      {children}
    </Button>
  );
}

interface CardProps {
  title: string;
  // What an address says to show this card: "#/world?card=held".
  name?: string;
  actions?: ComponentChildren;
  children: ComponentChildren;
}

export function Card({ title, name, actions, children }: CardProps) {
  const id = useId();
  const card = useRef<HTMLElement>(null);
  const shown = route.value;
  useEffect(() => {
    const page = card.current?.closest(".scroll");
    if (!card.current || !page || name === undefined || shown.values["card"] !== name) return;
    page.scrollTop += card.current.getBoundingClientRect().top - page.getBoundingClientRect().top;
  }, [shown, name]);
  return (
    <section ref={card} class="card" aria-labelledby={id}>
      <header>
        <h2 id={id}>{title}</h2>
        {actions}
      </header>
      <div class="card-body">{children}</div>
    </section>
  );
}

export function Badge({ kind = "", title, children }: { kind?: string; title?: string; children: ComponentChildren }) {
  return (
    <span class={`badge ${kind}`} title={title}>
      {children}
    </span>
  );
}

interface FieldProps {
  label: string;
  hint?: string | undefined;
  // Why what is typed cannot be sent.
  problem?: string | undefined;
  children: ComponentChildren;
}

export function Field({ label, hint, problem, children }: FieldProps) {
  return (
    <label class="field">
      <span class="label">{label}</span>
      {children}
      {hint && <span class="hint">{hint}</span>}
      <span class="problem" aria-live="polite">
        {problem}
      </span>
    </label>
  );
}

interface ChoiceProps<T extends string> {
  label: string;
  options: readonly (readonly [T, string])[];
  value: T;
  onChange: (value: T) => void;
  disabled?: boolean;
}

// One of a few, side by side.
export function Segmented<T extends string>({ label, options, value, onChange, disabled }: ChoiceProps<T>) {
  return (
    <div class="segmented" role="group" aria-label={label}>
      {options.map(([key, text]) => (
        <button type="button" key={key} aria-pressed={key === value} disabled={disabled} onClick={() => onChange(key)}>
          {text}
        </button>
      ))}
    </div>
  );
}

// One of many.
export function Select<T extends string>({ label, options, value, onChange, disabled }: ChoiceProps<T>) {
  return (
    <select aria-label={label} value={value} disabled={disabled} onChange={(event) => onChange(event.currentTarget.value as T)}>
      {options.map(([key, text]) => (
        <option key={key} value={key}>
          {text}
        </option>
      ))}
    </select>
  );
}

export function Switch({ label, on, disabled, onChange }: { label: string; on: boolean; disabled?: boolean; onChange: (on: boolean) => void }) {
  return (
    <button type="button" class="switch" role="switch" aria-checked={on} disabled={disabled} onClick={() => onChange(!on)}>
      <span class="track" aria-hidden="true" />
      <span>{label}</span>
    </button>
  );
}

export function SearchField({ label, value, onInput }: { label: string; value: string; onInput: (value: string) => void }) {
  return (
    <div class="search">
      <Icon name="search" />
      <input type="search" aria-label={label} placeholder={label} value={value} onInput={(event) => onInput(event.currentTarget.value)} />
    </div>
  );
}

export function Empty({ icon, title, children }: { icon: IconName; title: string; children?: ComponentChildren }) {
  return (
    <div class="empty">
      <Icon name={icon} />
      <p class="empty-title">{title}</p>
      {children}
    </div>
  );
}

