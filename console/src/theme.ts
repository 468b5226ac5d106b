// Light or dark: as the system has it, or as chosen here.
import { effect, signal } from "@preact/signals";

export type Theme = "system" | "light" | "dark";
const key = "loot-console-theme";
const themes: Theme[] = ["system", "light", "dark"];

const stored = () => themes.find((name) => name === localStorage.getItem(key)) ?? "system";
export const theme = signal<Theme>(stored());

effect(() => {
  const chosen = theme.value;
  if (chosen === "system") delete document.documentElement.dataset["theme"];
  else document.documentElement.dataset["theme"] = chosen;
  localStorage.setItem(key, chosen);
});

export function nextTheme(): void {
  theme.value = themes[(themes.indexOf(theme.value) + 1) % themes.length] ?? "system";
}
