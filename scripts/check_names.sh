#!/usr/bin/env bash
# check_names.sh SOURCE...: whether each source uses the names that it takes from elsewhere and its own constants.
# Compilers and Clang-Tidy ask this only of the file that they are given, which may be a unity build's.
set -euo pipefail
# shellcheck disable=SC2016 # the dollars are Perl's
perl -0777 -ne '
  my $text = $_;
  while ($text =~ /^ *(?:using [\w:]+::|namespace (?=\w+ = )|constexpr [^=({;]*?\b(?=k[A-Z]))(\w+)\b(?![:"])/mg) {
    my $name = $1;
    my $uses = () = /\b$name\b/g;
    if ($uses < 2) { print "$ARGV: $name is not used\n"; $found = 1 }
  }
  END { exit ($found // 0) }' "$@"
