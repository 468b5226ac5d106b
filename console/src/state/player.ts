// Signing in and out.
import { call } from "../api/client";
import { loadHeld, wantInventory } from "./inventory";

export async function login(): Promise<string> {
  await call("post", "/_host/login");
  wantInventory();
  await loadHeld();
  return "Signed in";
}

export async function logout(): Promise<string> {
  await call("post", "/_host/logout");
  return "Signed out";
}
