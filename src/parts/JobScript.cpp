#include "parts/JobScript.h"

#include "base/Paths.h"
#include "model/ModelCommand.h"
#include "parts/RunDirectory.h"
#include "parts/RunRecord.h"

namespace tarvex {

namespace {

constexpr std::int64_t kKilobytes = 1024;  // of a megabyte
// Stands in the words of the command where the script knows better; no path holds a byte of 1.
constexpr const char* kDirectorySign = "\x01";

constexpr const char* kSettings = R"(#!/bin/sh
# Written by Tarvex: carries out one part of a run.   job.sh ATTEMPT [PART]
# Without PART it is the task's index in a job array of Slurm. Needs a POSIX shell and coreutils.
run=@RUN@
output=@OUTPUT@
limit=@LIMIT@
memory=@MEMORY@
)";

constexpr const char* kBeginning = R"(
attempt=$1
index=${2:-$SLURM_ARRAY_TASK_ID}
case ${#index} in
  1) part=000$index ;;
  2) part=00$index ;;
  3) part=0$index ;;
  *) part=$index ;;
esac
dir=$run/parts/$part/$attempt
mark=$run/marks/$part.$attempt
child=

# From the line of this process in /proc: what stands behind its name.
fields() {
  read -r line < /proc/$$/stat
  set -- ${line##*) }
  group=$3
  born=${20}
}

# A mark appears whole under its name or not at all; its last line is "end". One that a crash of its machine takes costs
# a repetition and nothing else, so nobody waits for the disk here.
note() {
  printf '%s\n' "$2" "host $host" "job ${SLURM_JOB_ID:-0}" "pid $$" "born $born" "boot $boot" end > "$mark.$1.new" || return
  mv -f "$mark.$1.new" "$mark.$1"
}

# The engine wants the part to end: the mark first, then the model and what it started, deaf ones after two seconds.
# The script stays till then, or an engine that knows processes by their parents loses sight of them.
stopped() {
  trap '' TERM INT HUP
  note ended "code 143 stopped"
  [ -n "$child" ] || exit 143
  kill -TERM "$child" 2> /dev/null
  [ "$group" != $$ ] || kill -TERM 0
  tries=0
  while kill -0 "$child" 2> /dev/null && [ $tries -lt 20 ]; do
    sleep 0.1
    tries=$((tries + 1))
  done
  kill -KILL -- -"$child" "$child" 2> /dev/null  # with a limit the model is in the group of timeout
  [ "$group" != $$ ] || kill -KILL 0
  exit 143
}

read -r host < /proc/sys/kernel/hostname
read -r boot < /proc/sys/kernel/random/boot_id
fields
trap stopped TERM INT HUP
[ ! -e "$run/marks/stop" ] || exit 143
cd "$dir" || { note ended "code 125 directory"; exit 125; }
note begun begun
export TARVEX_PART="$run:$index:$attempt"
export TARVEX_OUTPUT="$dir/$output"
# -- prologue, the user's: module load and the like
)";

constexpr const char* kEnd = R"(
# -- end of prologue
[ "$memory" = 0 ] || ulimit -v "$memory"
if [ "$limit" = 0 ]; then
  @COMMAND@ < /dev/null > log 2>&1 &
else
  begun=$(date +%s)
  timeout -k 2 "$limit" @COMMAND@ < /dev/null > log 2>&1 &
fi
child=$!
wait "$child"
code=$?
reason=ended
case $limit.$code in
  0.*) ;;
  *.124 | *.137) [ $(($(date +%s) - begun)) -lt "$limit" ] || reason=limit ;;
esac
trap '' TERM INT HUP
note ended "code $code $reason"
exit "$code"
)";

void replaceSign(std::string& text, const std::string& sign, const std::string& by) {
  for (std::size_t at = text.find(sign); at != std::string::npos; at = text.find(sign, at + by.size()))
    text.replace(at, sign.size(), by);
}

// A word with the attempt's directory, which the script knows, in the sign's place.
std::string commandWord(const std::string& word) {
  std::string quoted = shellQuoted(word);
  replaceSign(quoted, kDirectorySign, "'\"$dir\"'");
  return quoted;
}

}  // namespace

std::string shellQuoted(const std::string& word) {
  std::string quoted = word;
  replaceSign(quoted, "'", "'\\''");
  return '\'' + quoted + '\'';
}

bool makeJobScript(const RunRecord& record, const RunDirectory& run, std::string& script, std::string& message) {
  const std::string directory = std::string(kDirectorySign) + '/';
  const bool isAbsolute = record.outputFile.starts_with('/');
  ModelCommand command;
  if (!makeModelCommand(record.executable, directory + "sample.sam",
                        isAbsolute ? record.outputFile : directory + record.outputFile, command, message))
    return false;
  std::string line = commandWord(existingPath(command.program));
  for (const std::string& argument : command.arguments) line += ' ' + commandWord(argument);
  std::string settings = kSettings;
  replaceSign(settings, "@LIMIT@", std::to_string(record.settings.timeLimit));
  replaceSign(settings, "@MEMORY@", std::to_string(record.settings.memory * kKilobytes));
  replaceSign(settings, "@OUTPUT@", shellQuoted(record.outputFile));
  replaceSign(settings, "@RUN@", shellQuoted(run.path()));
  std::string beginning = kBeginning;
  if (isAbsolute) replaceSign(beginning, "\"$dir/$output\"", "\"$output\"");
  std::string end = kEnd;
  replaceSign(end, "@COMMAND@", line);
  script = settings + beginning + (record.settings.prologue.empty() ? ":" : record.settings.prologue) + end;
  return true;
}

}  // namespace tarvex
