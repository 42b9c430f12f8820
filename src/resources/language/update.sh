#!/usr/bin/env bash
# Brings the catalogues' sources up to date with the texts in the code. A new text of the window or its
# dialogs then wants a Chinese translation, or a comment there that says why it stays in English.
set -eu
cd "$(dirname "$0")/../.."
lupdate=$(command -v lupdate || echo /usr/lib/qt5/bin/lupdate)
"$lupdate" -silent -locations none -no-obsolete -I . -extensions h,cpp,ui \
  terminal linkcfg checksum $(ls links/qlinkserial.* 2>/dev/null) -ts resources/language/tarnwick_zh_CN.ts
"$lupdate" -silent -locations none -no-obsolete -I . -extensions h,cpp,ui \
  terminal linkcfg checksum serialport links framers tools -ts resources/language/tarnwick_en_US.ts
# The workbench has a catalogue of its own; English is what its texts are written in.
"$lupdate" -silent -locations none -no-obsolete -I . -extensions h,cpp \
  workbench stack -ts resources/language/workbench_zh_CN.ts
# The English catalogue translates nothing: it lists the texts, and the source text is what shows. The
# framers' texts are listed by the class that says them, though tr() takes them from their base.
perl -0pi -e 's{<translation[^>]*>[^<]*</translation>}{<translation type="unfinished"></translation>}g;
  s{<name>QFramer</name>}{<name>QFramerCnet</name>};
  s{(\s*<message>\s*<source>rwlt: )}{\n</context>\n<context>\n    <name>QFramerRwlt</name>$1}' \
  resources/language/tarnwick_en_US.ts
