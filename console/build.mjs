// Makes the console's files: node build.mjs FOLDER
import { copyFile, mkdir } from "node:fs/promises";
import { build } from "esbuild";

const folder = process.argv[2];
await mkdir(folder, { recursive: true });
await build({
  entryPoints: { console: "src/main.tsx" },
  outdir: folder,
  bundle: true,
  minify: true,
  format: "iife",
  target: "es2022",
  jsx: "automatic",
  jsxImportSource: "preact",
  charset: "utf8",
  legalComments: "none",
  logLevel: "warning",
});
for (const file of ["index.html", "icon.svg"]) await copyFile(file, `${folder}/${file}`);
