#!/usr/bin/env bash
# Applies, one at a time, a fixed list of small faults to the product code, rebuilds,
# runs the suite, and prints which faults the suite caught. The sources are restored
# whatever happens (the edited file is copied aside first and put back on exit).
#
#   scripts/mutation-check.sh [BUILD_DIR]        every fault (default build dir: build-mutation)
#   MUTANTS="3 7" scripts/mutation-check.sh      only those faults
#
# A fault is: the file (its name, found anywhere under src/), a text that must occur
# exactly once in it, and what it becomes. When a file moves, its name still finds it.
# Run by hand; it takes a rebuild and a suite run per fault.
set -uo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build_dir=${1:-build-mutation}
log_dir=$(mktemp -d /tmp/kelvora-mutation.XXXXXX)

# id | file | original | replacement | what a user would notice   (fields apart by " | ")
mutants=$(cat <<'EOF'
1 | TimingCalculator.cpp | std::floor(60000.0 / g.TT) | std::ceil(60000.0 / g.TT) | the dot is rounded up: a wrong speed
2 | TimingCalculator.cpp | g.EM = speed - 1; | g.EM = speed; | the word spaces of the reference word are one too many
3 | TimingCalculator.cpp | g.NT += 1; | g.NT += 2; | dashes counted twice in the reference word
4 | ToneBank.cpp | if (i > n - 10) | if (i > n - 9) | the fade at the end of a tone is shorter
5 | ToneBank.cpp | silence(sup * (plan.letterGap * 8), error) | silence(plan.letterGap * 8, error) | the extra spacing no longer stretches letter gaps
6 | ToneBank.cpp | if (volume > 127) { | if (volume > 128) { | a volume of 128 is accepted
7 | WavHeader.cpp | put32(dataBytes + 36); | put32(dataBytes + 44); | the RIFF size in the header is wrong
8 | SoundRenderer.cpp | if (next < view.size() && view[next] != u' ') | if (next < view.size()) | a letter gap is added before a word gap
9 | SoundRenderer.cpp | sent = request.deb + u' ' + sent + u' ' + request.fin; | sent = request.deb + u' ' + sent; | the end sign is not sent
10 | SoundRenderer.cpp | if (r.selectionLength >= 1) | if (r.selectionLength >= 2) | a one-character selection sends the whole text
11 | PatternLookup.cpp | QString c = character.toLower(); | QString c = character; | upper-case letters are not found in the reference table
12 | Numbers.cpp | return radixNumber(text, pos + 2, 16); | return radixNumber(text, pos + 2, 10); | &H numbers read as decimal
13 | Numbers.cpp | return c == u' ' || c == u'\t' || c == u'\n'; | return c == u' '; | a tab inside a number stops it
14 | Numbers.cpp | digits += '-'; | digits += '+'; | negative numbers read as positive
15 | TextUtils.cpp | while (end > begin && text[end - 1] == u' ') | while (end > begin && text[end - 1] == u'\t') | trailing blanks are not trimmed
16 | Windows1252.cpp | 0x0152, 0x008D, 0x017D | 0x0152, 0x00A0, 0x017D | an undefined Windows-1252 byte decodes as a no-break space
17 | Windows1252.cpp | out.append(b >= 0 ? char(b) : '?'); | out.append(b >= 0 ? char(b) : ' '); | a character Windows-1252 lacks is written as a blank
18 | JetPattern.cpp | m_items.push_back({Kind::Digit}); | m_items.push_back({Kind::AnyChar}); | "#" in a condition matches letters
19 | JetPattern.cpp | return found != set.negated; | return found; | "[!a-c]" matches like "[a-c]"
20 | CorrectionStepper.cpp | if (next.length == m_stopLength) | if (next.length == m_stopLength + 1) | the correction plays one character past the selection
21 | CorrectionStepper.cpp | m_interval = m_interval == 0 ? std::max(0, delayMs) : 0; | m_interval = std::max(0, delayMs); | "Pause" no longer pauses the correction
22 | PlayTime.cpp | .arg(thousandths, 3, 10, QLatin1Char('0')); | .arg(thousandths, 2, 10, QLatin1Char('0')); | the play time shows two digits of thousandths
23 | PttPortName.cpp | QString::number(portNumber - 1) | QString::number(portNumber) | push-to-talk keys the wrong serial port
24 | MainTexts.cpp | QStringLiteral("),   Utilisateur=") | QStringLiteral("), Utilisateur=") | the caption changes
25 | SettingsStore.cpp | return !section.isEmpty() && !section.contains(u'/') && !section.contains(u'\\'); | return !section.isEmpty(); | a user name with "/" writes outside its profile
26 | UserProfile.cpp | (quint32(blue & 0xFF) << 16) | (quint32(blue & 0xFF) << 8) | stored colours lose their blue
27 | SoundSettings.cpp | return v < 3 ? QStringLiteral("3") : vitesse; | return v < 2 ? QStringLiteral("3") : vitesse; | a speed of 2 is accepted
28 | RecordSet.cpp | return m_position == position; | return true; | moving past the last record says it moved
29 | WordTables.cpp | if (table.attributes == 0 && table.name != QLatin1String("ref")) | if (table.attributes == 0) | the reference table shows among the word tables
30 | ProfileController.cpp | return QStringLiteral("Aucun nom saisi"); | return {}; | a blank user name becomes a profile
31 | ExercisePlayback.cpp | m_controls.rewind->setEnabled(open); | m_controls.rewind->setEnabled(true); | rewind is offered with no sound
32 | PushToTalkControl.cpp | return m_controls.enable->isChecked(); | return false; | push-to-talk is never keyed
33 | BackgroundNoise.cpp | if (!m_controls.autoStart[std::size_t(i)]->isChecked()) | if (m_controls.autoStart[std::size_t(i)]->isChecked()) | the wrong noises start with the exercise
34 | ViewSwitcher.cpp | m_views.currentWord->setVisible(!hidden); | m_views.currentWord->setVisible(hidden); | the hidden text shows
35 | CliApp.cpp | if (*v != "0" && *v != "1") | if (*v != "0") | --debfin 1 is refused
36 | WavReader.cpp | if (bits != 8 && bits != 16) | if (bits != 8 && bits != 24) | 16-bit noise files are refused
37 | PcmConverter.cpp | return (float(static_cast<unsigned char>(*p)) - 128.0f) / 128.0f; | return (float(static_cast<unsigned char>(*p)) - 127.0f) / 128.0f; | 8-bit sound is played off-centre
38 | JetFunctions.cpp | {"lcase", 1, lcase}, | {"lcase", 1, len}, | lcase() in a condition gives a length
39 | WordDatabase.cpp | const bool writeAheadLog = header[18] == 2 || header[19] == 2; | const bool writeAheadLog = false; | a table in write-ahead-log mode no longer shows another program's new words
40 | RecordSet.cpp | [&null](quint32 i) { return null[i]; } | [&null](quint32 i) { return null[i] && false; } | empty cells no longer come first in the table's order
41 | WordTables.cpp | if (!allAdded) | if (false && !allAdded) | a word the table refuses leaves the words before it imported
EOF
)

declare -A backup=()
current_file=""
restore() {
  if [ -n "$current_file" ] && [ -f "$log_dir/original" ]; then
    cp "$log_dir/original" "$current_file"
    current_file=""
  fi
}
trap 'restore; echo "mutation-check: sources restored"; exit 130' INT TERM
trap 'restore' EXIT

if [ ! -f "$build_dir/CMakeCache.txt" ]; then
  cmake -S . -B "$build_dir" -DCMAKE_BUILD_TYPE=Release -DKELVORA_BUILD_BENCH=OFF >"$log_dir/configure.log" 2>&1 \
    || { echo "mutation-check: configure failed ($log_dir/configure.log)"; exit 2; }
fi
echo "mutation-check: building the unchanged sources"
cmake --build "$build_dir" -j"$(nproc)" >"$log_dir/build.log" 2>&1 \
  || { echo "mutation-check: the unchanged sources do not build ($log_dir/build.log)"; exit 2; }

selected=${MUTANTS:-}
caught=0; missed=0; broken=0; total=0
missed_list=()
while IFS= read -r line; do
  [ -z "$line" ] && continue
  id=${line%%' | '*}; rest=${line#*' | '}
  file=${rest%%' | '*}; rest=${rest#*' | '}
  original=${rest%%' | '*}; rest=${rest#*' | '}
  replacement=${rest%%' | '*}; what=${rest#*' | '}
  if [ -n "$selected" ] && ! [[ " $selected " == *" $id "* ]]; then continue; fi
  total=$((total + 1))
  path=$(find src -name "$file" -type f | head -n 1)
  if [ -z "$path" ]; then
    echo "  $id  NOT APPLIED  ($file not found)"; broken=$((broken + 1)); continue
  fi
  cp "$path" "$log_dir/original"
  current_file=$path
  if ! python3 - "$path" "$original" "$replacement" <<'PY'
import sys
path, old, new = sys.argv[1:4]
text = open(path, encoding='utf-8').read()
if text.count(old) != 1:
    sys.exit(1)
open(path, 'w', encoding='utf-8').write(text.replace(old, new))
PY
  then
    restore
    echo "  $id  NOT APPLIED  (text not found once in $path)"; broken=$((broken + 1)); continue
  fi
  if ! cmake --build "$build_dir" -j"$(nproc)" >"$log_dir/build-$id.log" 2>&1; then
    restore
    echo "  $id  caught by the compiler  — $what"; caught=$((caught + 1)); continue
  fi
  if scripts/run-tests.sh "$build_dir" --stop-on-failure --timeout 120 >"$log_dir/test-$id.log" 2>&1; then
    missed=$((missed + 1)); missed_list+=("$id")
    echo "  $id  MISSED  — $what  ($path)"
  else
    caught=$((caught + 1))
    failed=$(grep -oE '[0-9]+ - tst_[a-z_0-9]+' "$log_dir/test-$id.log" | head -n 3 | sed 's/^[0-9]* - //' | tr '\n' ' ')
    echo "  $id  caught by $failed — $what"
  fi
  restore
done <<<"$mutants"

# Leave the build matching the restored sources.
cmake --build "$build_dir" -j"$(nproc)" >/dev/null 2>&1
echo "mutation-check: $caught caught, $missed missed, $broken not applied, of $total (logs: $log_dir)"
[ "$missed" -eq 0 ] && [ "$broken" -eq 0 ]
