# Bash completion for ngrex, ngrex-import and ngrex-table.

_ngrex_complete() {
  local program=${1##*/} current=$2 previous=$3
  local options files values=''
  case $program in
    ngrex)
      options='-c -cf -cs -cw -d -f -fs -i -m -n -o -p -s -ta -tc -te -tf -tl -tm -to -tp -tt -tz'
      files=' -c -cf -d -f -fs -i -o -s '
      [[ $previous == -n ]] && values='2 3 4 5 6 7'
      ;;
    ngrex-import)
      options='-o --output --from --tag --relations --protect-lemmas --no-protect-lemmas --split --list --mask --check
        --strict --tag-table -q --quiet -h --help --version'
      files=' -o --output --list '
      case $previous in
        --from) values='conllu conllx datafile' ;;
        --tag) values='xpos upos feats' ;;
        --relations) values='keep functions' ;;
      esac
      ;;
    ngrex-table)
      options='--columns --cells --pattern --measures --sort --top --min-frequency --where --format --precision
        -h --help --version'
      files=' '
      case $previous in
        --format) values='tsv csv jsonl markdown ucs table' ;;
        --measures) values="G2 X2 MI MI3 logDice Dice t z Fisher odds_ratio" ;;
      esac
      ;;
  esac
  if [[ -n $values ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$current")
  elif [[ $files != *" $previous "* && $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}

complete -o filenames -F _ngrex_complete ngrex ngrex-import ngrex-table
