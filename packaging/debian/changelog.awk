# Makes a changelog in Debian's form of CHANGELOG.md: an entry for each section "## VERSION (DATE)", with its items in lines
# of at most 78 characters. usage: awk -v maintainer="NAME <MAIL>" -f changelog.awk CHANGELOG.md

function print_item(    words, count, i, line) {
  count = split(item, words, " ")
  line = "  *"
  for (i = 1; i <= count; i++) {
    if (length(line) + 1 + length(words[i]) > 78) {
      print line
      line = "   "
    }
    line = line " " words[i]
  }
  if (count) print line
  item = ""
}

function print_trailer(    command, stamp) {
  print_item()
  if (!date) return
  command = "date --utc --rfc-email --date " date
  command | getline stamp
  close(command)
  print "\n -- " maintainer "  " stamp
}

/^## [0-9.]+ \([0-9-]+\)$/ {
  print_trailer()
  date = substr($3, 2, 10)
  print (NR > 1 && entries++ ? "\n" : "") "ngrex (" $2 ") unstable; urgency=medium\n"
}
date && /^- / { print_item(); item = substr($0, 3) }
date && /^  / { item = item " " $0 }
END { print_trailer() }
