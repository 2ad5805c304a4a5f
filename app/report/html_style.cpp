#include "app/report/html_style.h"

namespace proof::html {

QString Style() {
    return QStringLiteral(R"(
:root { --ink: #1d2530; --soft: #5c6775; --line: #d8dee6; --pale: #f4f6f9; --brand: #1f4e79;
        --green: #2e7d4f; --yellow: #b7791f; --red: #b3261e; --grey: #9aa5b1; }
* { box-sizing: border-box; }
html { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
body { margin: 0; color: var(--ink); background: #e9edf2;
       font: 10.5pt/1.45 "Segoe UI", "Helvetica Neue", "Liberation Sans", Arial, sans-serif; }
main { max-width: 210mm; margin: 8mm auto; padding: 16mm 15mm; background: #fff; box-shadow: 0 1px 6px #0002; }
header.band { border-bottom: 3px solid var(--brand); padding-bottom: 5mm; margin-bottom: 7mm; }
header.band p { margin: 0; color: var(--soft); }
h1 { margin: 0 0 1mm; font-size: 22pt; font-weight: 600; color: var(--brand); letter-spacing: -.01em; }
h2 { margin: 10mm 0 3mm; font-size: 15pt; font-weight: 600; color: var(--brand); }
h3 { margin: 7mm 0 2mm; font-size: 11.5pt; font-weight: 600; }
h2, h3, h4 { break-after: avoid; }
p { margin: 0 0 3mm; }
.soft { color: var(--soft); }
table { width: 100%; border-collapse: collapse; margin: 0 0 5mm; font-size: 9pt; }
th { text-align: left; font-weight: 600; color: var(--soft); border-bottom: 1.5px solid var(--ink); padding: 1.4mm 2mm; }
td { border-bottom: 1px solid var(--line); padding: 1.3mm 2mm; vertical-align: top; overflow-wrap: anywhere; }
th { vertical-align: bottom; line-height: 1.2; }
th.n, td.n { text-align: right; overflow-wrap: normal; }
td.n { font-variant-numeric: tabular-nums; white-space: nowrap; }
th:first-child, td:first-child { min-width: 38mm; }
td .soft { white-space: nowrap; }
td.row .soft { white-space: normal; }
tr { break-inside: avoid; }
thead { display: table-header-group; }
tr.sum td { font-weight: 600; border-top: 1.5px solid var(--ink); }
tr.bad td { background: #fcefee; }
table.facts { width: auto; font-size: 10.5pt; }
h4 { margin: 3mm 0 1mm; font-size: 9.5pt; font-weight: 600; }
h4 .soft { font-weight: 400; }
table.samples { table-layout: fixed; margin-bottom: 3mm; font-size: 8pt; }
table.samples th:first-child, table.samples td:first-child { min-width: 0; }
table.samples td, table.samples th { border-width: 0 0 1px; border-color: var(--line); padding: .5mm 2mm; }
table.rules td:first-child { width: 1%; }
table.facts td { border: 0; padding: .7mm 6mm .7mm 0; }
table.facts td:first-child { color: var(--soft); white-space: nowrap; }
.bad strong, td strong.bad { color: var(--red); }
.verdict { display: flex; gap: 6mm; align-items: center; margin: 7mm 0; padding: 5mm 6mm;
           border: 1px solid var(--line); border-left: 7px solid; border-radius: 3px; background: var(--pale);
           break-inside: avoid; }
.verdict .lamp { flex: none; width: 15mm; height: 15mm; border-radius: 50%; color: #fff; display: grid;
                 place-items: center; font-size: 22pt; line-height: 1; }
.verdict b { display: block; font-size: 14pt; }
.verdict p { margin: 1mm 0 0; }
.verdict.green { border-left-color: var(--green); } .green .lamp, .tag.green { background: var(--green); }
.verdict.yellow { border-left-color: var(--yellow); } .yellow .lamp, .tag.yellow { background: var(--yellow); }
.verdict.red { border-left-color: var(--red); } .red .lamp, .tag.red { background: var(--red); }
.tag { display: inline-block; padding: 0 2.2mm; border-radius: 2.2mm; color: #fff; font-size: 8.5pt; font-weight: 600;
       white-space: nowrap; }
.sign { display: grid; grid-template-columns: 1fr 1fr 32mm; gap: 10mm; margin-top: 18mm; break-inside: avoid; }
.sign div { border-top: 1px solid var(--ink); padding-top: 1.5mm; color: var(--soft); font-size: 9pt; }
.keep { white-space: nowrap; }
.pairs { display: grid; grid-template-columns: 1fr 1fr; gap: 0 8mm; }
.whole { break-inside: avoid; }
.chart { width: 100%; height: auto; margin: 1mm 0 4mm; break-inside: avoid; }
.chart text { font-size: 11px; fill: var(--ink); }
.found { fill: var(--green); } .missing { fill: var(--red); } .skipped { fill: var(--grey); }
.givenup { fill: var(--yellow); } .unread { fill: #5b3e8f; } .source { fill: var(--brand); } .target { fill: #7fa8d1; }
footer { margin-top: 10mm; padding-top: 3mm; border-top: 1px solid var(--line); color: var(--soft); font-size: 8.5pt;
         overflow-wrap: anywhere; }
@page { size: A4; margin: 16mm 14mm 18mm;
        @bottom-right { content: "Pagina " counter(page) " di " counter(pages); font: 8pt sans-serif; color: #5c6775; }
        @bottom-left { content: "Verbale di quadratura"; font: 8pt sans-serif; color: #5c6775; } }
@media print {
  body { background: #fff; font-size: 9.5pt; }
  main { max-width: none; margin: 0; padding: 0; box-shadow: none; }
  .page { break-before: page; }
  .page > h2:first-child { margin-top: 0; }
}
)");
}

} // namespace proof::html
