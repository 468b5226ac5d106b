// Signing in and out.
import { call } from "../api/client";
import { loadHeld } from "./inventory";

export async function login(): Promise<string> {
  await call("post", "/_host/login");
  await loadHeld();
  return "Signed in";
}

export async function logout(): Promise<string> {
  await call("post", "/_host/logout");
  return "Signed out";
}
