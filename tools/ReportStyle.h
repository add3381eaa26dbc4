#pragma once

#include <string_view>

namespace tovi {

/// The style sheet of the page: light and dark, narrow and wide, on screen and on paper. Texts keep
/// a contrast of 4.5 to 1 to what they stand on, and kinds of parts differ by pattern too.
inline constexpr std::string_view reportStyle = R"css(
:root {
  color-scheme: light dark;
  --page: #f4f5f8; --card: #fff; --text: #1a1e25; --muted: #545d69; --line: #d3d8e0; --link: #0a4fb0;
  --error: #9d1c14; --error-back: #fdeae8; --warning: #714700; --warning-back: #fff3d1;
  --notice: #0d4a86; --notice-back: #e6f0fb; --good: #17602f; --good-back: #e5f5ea;
  --record: #2b6cb8; --record-2: #5a92d4; --wrapper: #1b3556; --undecodable: #b3261e; --stale: #a66a00;
  --erased: #7a5c99; --gap: #e9ecf1; --stripe: #ffffffb0;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #0f1217; --card: #181c23; --text: #e7eaef; --muted: #a2acb8; --line: #343c48; --link: #86bdff;
    --error: #ffaaa2; --error-back: #3b1715; --warning: #f2c873; --warning-back: #32260a;
    --notice: #9acbff; --notice-back: #12283f; --good: #8edca5; --good-back: #12301c;
    --record: #5c9ce8; --record-2: #3d78c0; --wrapper: #a9c9ef; --undecodable: #f0655b; --stale: #d99a2b;
    --erased: #a98bc8; --gap: #262c36; --stripe: #0f1217b0;
  }
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; -webkit-text-size-adjust: 100%; }
body {
  margin: 0; background: var(--page); color: var(--text); overflow-wrap: anywhere;
  font: 1rem/1.5 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", sans-serif;
}
header, main, footer { max-width: 76rem; margin: 0 auto; padding: 0 1rem; }
header { padding-top: 1.5rem; }
footer { padding-bottom: 2rem; color: var(--muted); font-size: .875rem; }
h1 { margin: 0 0 .75rem; font-size: clamp(1.5rem, 1.1rem + 2vw, 2.25rem); line-height: 1.2; }
h2 { margin: 2.5rem 0 .75rem; font-size: 1.375rem; line-height: 1.25; }
h3 { margin: 0 0 .5rem; font-size: 1.0625rem; line-height: 1.35; }
h4 { margin: .75rem 0 .25rem; font-size: .875rem; color: var(--muted); font-weight: 600; }
p { margin: 0 0 .75rem; }
a { color: var(--link); text-underline-offset: .15em; }
:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; border-radius: 3px; }
:target { outline: 3px solid var(--stale); outline-offset: -1px; scroll-margin: 5rem; }
section:target { outline: none; }
code, td.number { font-variant-numeric: tabular-nums; }
code { font-family: ui-monospace, "Cascadia Mono", Menlo, Consolas, monospace; font-size: .925em; }
.skip { position: absolute; left: -100vw; }
.skip:focus { left: 1rem; top: .5rem; background: var(--card); padding: .25rem .5rem; }
.kicker, .note { color: var(--muted); }
.kicker { margin: 0; font-size: .875rem; letter-spacing: .02em; }
.note { font-size: .9375rem; }
nav ul, .tiles, .cards, .links, .legend { list-style: none; margin: 0; padding: 0; }
nav ul { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; padding-bottom: .75rem; border-bottom: 1px solid var(--line); }
nav a { display: inline-block; padding: .25rem 0; }
#summary h2 { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); }
.facts { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 15rem), 1fr)); gap: .75rem 1.5rem; margin: 1.25rem 0; }
.facts dt, .members dt { color: var(--muted); font-size: .875rem; }
dd { margin: 0; }
.facts dd { font-weight: 600; }
.tiles { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 10.5rem), 1fr)); gap: .625rem; margin-bottom: 1rem; }
.tiles li { display: flex; }
.tiles li:last-child { grid-column: 1 / -1; }
.tile {
  flex: 1; display: flex; align-items: baseline; gap: .5rem; padding: .625rem .875rem; border: 1px solid var(--line);
  border-radius: .5rem; background: var(--card); color: var(--text); text-decoration: none;
}
.tile:hover { border-color: var(--link); }
.tile span { text-decoration: underline; text-decoration-color: var(--line); }
.tile strong { font-size: 1.375rem; line-height: 1.2; font-variant-numeric: tabular-nums; }
.tile.none { color: var(--muted); background: none; }
.tile.error { background: var(--error-back); color: var(--error); border-color: currentColor; }
.tile.warning { background: var(--warning-back); color: var(--warning); border-color: currentColor; }
.tile.good { background: var(--good-back); color: var(--good); border-color: currentColor; }
.cards { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 21rem), 1fr)); gap: .875rem; align-items: start; }
.card { min-width: 0; background: var(--card); border: 1px solid var(--line); border-radius: .625rem; padding: .875rem 1rem; }
.card > :last-child { margin-bottom: 0; }
.card.loose { border-style: dashed; }
div.card, .file { margin: .875rem 0 0; }
.members { margin: 0 0 .5rem; }
.members div { display: grid; grid-template-columns: 7.5rem minmax(0, 1fr); gap: .75rem; padding: .1875rem 0; }
.members .note { display: block; }
.links { display: flex; flex-wrap: wrap; gap: .25rem .875rem; }
.links li { max-width: 100%; }
.badge {
  display: inline-block; padding: 0 .5rem; border: 1px solid var(--line); border-radius: 1rem; font-size: .8125rem;
  font-weight: 600; line-height: 1.5rem; white-space: nowrap; color: var(--notice); background: var(--notice-back);
}
.badge.error { color: var(--error); background: var(--error-back); border-color: currentColor; }
.badge.error::before { content: "✕ "; }
.badge.warning { color: var(--warning); background: var(--warning-back); border-color: currentColor; }
.badge.warning::before { content: "▲ "; }
.badge.notice::before { content: "• "; }
.alert { padding: .625rem .875rem; border-left: .25rem solid; border-radius: .25rem; color: var(--error); background: var(--error-back); }
.fill { margin-bottom: .5rem; }
details { margin: .5rem 0 0; }
summary { cursor: pointer; color: var(--link); padding: .125rem 0; }
.findings { list-style: none; margin: 0; padding: 0; background: var(--card); border: 1px solid var(--line); border-radius: .5rem; }
.findings li { display: grid; grid-template-columns: 6.5rem 12rem minmax(0, 1fr) minmax(0, 2fr); gap: .25rem 1rem; padding: .5rem .75rem; }
.findings li + li { border-top: 1px solid var(--line); }
.findings li > * { margin: 0; }
.findings h3 { font-size: .9375rem; line-height: 1.5rem; }
.scroll { overflow-x: auto; background: var(--card); border: 1px solid var(--line); border-radius: .5rem; margin-bottom: 1rem; }
details .scroll { margin: .5rem 0 0; }
table { border-collapse: collapse; width: 100%; font-size: .9375rem; font-variant-numeric: tabular-nums; overflow-wrap: normal; }
th, td { padding: .4375rem .75rem; text-align: left; vertical-align: top; border-top: 1px solid var(--line); max-width: 26rem; min-width: 3rem; overflow-wrap: break-word; }
thead th::first-letter { text-transform: uppercase; }
thead th { border-top: 0; color: var(--muted); font-size: .8125rem; font-weight: 600; white-space: nowrap; vertical-align: bottom; }
tbody th { font-weight: 600; min-width: 8rem; }
td.number { text-align: right; }
td.map { min-width: 14rem; }
.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; font-size: .9375rem; }
.swatch { display: inline-block; width: 1.25rem; height: .875rem; border-radius: 2px; vertical-align: -.0625rem; border: 1px solid var(--line); }
.bar { position: relative; }
.cells { display: flex; height: 2rem; overflow: hidden; border: 1px solid var(--muted); border-radius: .25rem; }
td.map .cells { height: 1.375rem; }
.cells > * { flex: 0 1 0; min-width: 0; background-clip: padding-box; }
.cells > .undecodable, .cells > .stale, .cells > .erased { min-width: 3px; }
.record { background: var(--record); }
.cells > .record:nth-child(even) { background: var(--record-2); }
.gap { background: var(--gap); }
.wrapper { background: var(--wrapper); }
.undecodable { background: repeating-linear-gradient(45deg, var(--undecodable) 0 5px, var(--stripe) 5px 8px) var(--undecodable); }
.stale { background: repeating-linear-gradient(90deg, var(--stale) 0 4px, var(--stripe) 4px 7px) var(--stale); }
.erased { background: repeating-linear-gradient(0deg, var(--erased) 0 3px, var(--stripe) 3px 6px) var(--erased); }
.cells > :hover { filter: brightness(1.2); }
.cells > :focus-visible { outline: 3px solid var(--text); outline-offset: -3px; border-radius: 0; }
.cells > :hover::after, .cells > :focus-visible::after {
  content: attr(aria-label); position: absolute; z-index: 1; left: 0; top: calc(100% + .25rem); max-width: 100%;
  padding: .25rem .625rem; border-radius: .25rem; background: var(--text); color: var(--page); font-size: .875rem;
  pointer-events: none;
}
.cells:hover > :focus-visible:not(:hover)::after { content: none; }
@media (max-width: 48rem) { .findings li { grid-template-columns: minmax(0, 1fr); } }
@media (max-width: 30rem) {
  header, main, footer { padding-left: .75rem; padding-right: .75rem; }
  .tiles { grid-template-columns: repeat(2, minmax(0, 1fr)); }
  .tile { flex-wrap: wrap; gap: 0 .5rem; }
  .members div { grid-template-columns: 6rem minmax(0, 1fr); }
  th, td { padding: .375rem .5rem; }
}
@media (prefers-reduced-motion: reduce) { html { scroll-behavior: auto; } }
@media print {
  :root { --page: #fff; --card: #fff; --text: #000; --muted: #444; --line: #999; --link: #000; color-scheme: light; }
  nav, .skip, summary { display: none; }
  body { font-size: 10pt; }
  header, main, footer { max-width: none; padding: 0; }
  a { text-decoration: none; }
  .scroll { overflow: visible; }
  .card, tr { break-inside: avoid; }
  h2, h3, h4 { break-after: avoid; }
  .cells, .swatch, .badge, .tile { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)css";

}  // namespace tovi
