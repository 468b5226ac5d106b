// Line icons on a grid of 20.
const shapes = {
  grid: "M3 3h6v6H3zM11 3h6v6h-6zM3 11h6v6H3zM11 11h6v6h-6z",
  timeline: "M6 3v14M6 6h11M6 10h8M6 14h10M4.5 6h3M4.5 10h3M4.5 14h3",
  globe: "M10 2.5a7.5 7.5 0 1 0 0 15a7.5 7.5 0 1 0 0-15M2.5 10h15M10 2.5c-5 5-5 10 0 15c5-5 5-10 0-15",
  braces: "M7.5 3C5 3 5.5 5 5.5 7S5 10 3 10c2 0 2.5 1 2.5 3s-.5 4 2 4M12.5 3c2.5 0 2 2 2 4s.5 3 2.5 3c-2 0-2.5 1-2.5 3s.5 4-2 4",
  server: "M3 4h14v5H3zM3 11h14v5H3zM6 6.5h.01M6 13.5h.01M10 6.5h4M10 13.5h4",
  search: "M9 3.5a5.5 5.5 0 1 0 0 11a5.5 5.5 0 1 0 0-11M13 13l4 4",
  close: "M5 5l10 10M15 5L5 15",
  copy: "M7 7h9v9H7zM4 13V4h9",
  check: "M4 10.5l4 4 8-9",
  reset: "M4.5 7A6.5 6.5 0 1 1 3.5 11M4 3v4.5h4.5",
  sun: "M10 6.5a3.5 3.5 0 1 0 0 7a3.5 3.5 0 1 0 0-7M10 2v1.5M10 16.5V18M2 10h1.5M16.5 10H18M4.3 4.3l1.1 1.1M14.6 14.6l1.1 1.1M15.7 4.3l-1.1 1.1M5.4 14.6l-1.1 1.1",
  moon: "M16.5 12A7 7 0 0 1 8 3.5a7 7 0 1 0 8.5 8.5",
  half: "M10 3a7 7 0 1 0 0 14zM10 3a7 7 0 0 1 0 14",
  warn: "M10 3l7.5 13.5h-15zM10 8v4M10 14.3h.01",
  play: "M6 4l10 6-10 6z",
  pause: "M6.5 4v12M13.5 4v12",
  person: "M10 3.5a3 3 0 1 0 0 6a3 3 0 1 0 0-6M4 17c0-7 12-7 12 0",
  clock: "M10 3a7 7 0 1 0 0 14a7 7 0 1 0 0-14M10 6v4l3 2",
  hand: "M6 10V5.5M8.5 9V4M11 9V4M13.5 10V5.5M6 9.5c-2-1-3 0-2 2l2 4c1 1.5 7 1.5 7.5 0 .5-1 .5-3 .5-6",
  bolt: "M11 2.5L4.5 11.5H9L8 17.5l7-9.5h-4.5z",
  link: "M8 12l4-4M9 6l2-2c3-3 7 1 4 4l-2 2M11 14l-2 2c-3 3-7-1-4-4l2-2",
  download: "M10 3v9M6 9l4 4 4-4M4 16.5h12",
  upload: "M10 13V4M6 8l4-4 4 4M4 16.5h12",
  book: "M3 4.5c2.5-1 5-1 7 .5v11c-2-1.5-4.5-1.5-7-.5zM17 4.5c-2.5-1-5-1-7 .5M17 4.5v11c-2.5-1-5-1-7 .5",
  chevron: "M7 4l6 6-6 6",
};
export type IconName = keyof typeof shapes;

export function Icon({ name }: { name: IconName }) {
  return (
    <svg class="icon" viewBox="0 0 20 20" aria-hidden="true">
      <path d={shapes[name]} />
    </svg>
  );
}
