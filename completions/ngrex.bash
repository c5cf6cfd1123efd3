# Bash completion for ngrex and its companions.

# Completes the last name of a list separated by commas, "$1" of the words in "$2".
_ngrex_complete_list() {
  local begun=''
  [[ $1 == *,* ]] && begun=${1%,*},
  mapfile -t COMPREPLY < <(compgen -P "$begun" -W "$2" -- "${1##*,}")
}

# What follows an option: words, a list of words ("list:"), files ("files"), or something that cannot be completed ("text").
# Prints nothing for a switch.
_ngrex_value_of() {
  local measures='G2 X2 simple_ll expected t z poisson MI MI3 local_mi npmi Dice logDice jaccard min_sensitivity phi odds_ratio
    log_ratio delta_p12 delta_p21 p_G2 p_X2 Fisher'
  local columns='frequency per_million total pattern chi_square log_likelihood mutual_information pearson t_test z_score'
  columns+=" $measures $(printf '%s ' {lemma,tag,parent,relation,marginal}{1,2,3,4,5,6,7})"
  case $1:$2 in
    ngrex:-n) echo '2 3 4 5 6 7' ;;
    ngrex:-cs) echo '0 1 2' ;;
    ngrex:-[cdfios] | ngrex:-cf | ngrex:-fs) echo files ;;
    ngrex:-[mp] | ngrex:-cw | ngrex:-t[cefmlptz]) echo text ;;
    ngrex-import:-o | ngrex-import:--output | ngrex-import:--list | ngrex-import:--sentences | ngrex-import:--relation-map) echo files ;;
    ngrex-import:--from) echo 'conllu conllx datafile' ;;
    ngrex-import:--tag) echo 'xpos upos feats' ;;
    ngrex-import:--relations) echo 'keep functions' ;;
    ngrex-import:--print-relation-map) echo 'ud sud' ;;
    ngrex-import:--mask | ngrex-import:--split) echo text ;;
    ngrex-table:-o | ngrex-table:--output | ngrex-table:--compare | ngrex-table:--contexts | ngrex-table:--statistics) echo files ;;
    ngrex-table:--merge) echo 'list: order tag relation' ;;
    ngrex-table:--within) echo 'relation head-relation' ;;
    ngrex-table:--format) echo 'tsv csv jsonl markdown ucs table sqlite xlsx' ;;
    ngrex-table:--json-numbers) echo 'null strings' ;;
    ngrex-table:--na) echo text ;;
    ngrex-table:--measures) echo "list: $measures" ;;
    ngrex-table:--columns) echo "list: rank lemma tag parent relation marginal cell $columns" ;;
    ngrex-table:--per) echo "list: $columns" ;;
    ngrex-table:--groups) echo 'size name' ;;
    ngrex-table:--sort) echo "list: $columns $(printf '+%s ' $columns) $(printf -- '-%s ' $columns)" ;;
    ngrex-table:--top | ngrex-table:--min-frequency | ngrex-table:--precision | ngrex-table:--where | ngrex-table:--memory | ngrex-table:--profile) echo text ;;
    ngrex-examples:-[fio] | ngrex-examples:--list | ngrex-examples:--rules | ngrex-examples:--output | ngrex-examples:--sentences) echo files ;;
    ngrex-examples:--context-sentences | ngrex-report:--context-sentences) echo '0 1 2' ;;
    ngrex-examples:--format) echo 'text kwic tsv jsonl conllu' ;;
    ngrex-examples:--sort) echo "list: $columns $(printf '+%s ' $columns) $(printf -- '-%s ' $columns)" ;;
    ngrex-examples:-[dm] | ngrex-examples:--context-words | ngrex-examples:--prefix | ngrex-examples:--mask | ngrex-examples:--where | ngrex-examples:--min-frequency | ngrex-examples:--top) echo text ;;
    ngrex-examples:--memory | ngrex-examples:--pattern | ngrex-examples:--examples) echo text ;;
    ngrex-report:-[ofis] | ngrex-report:--output | ngrex-report:--statistics | ngrex-report:--list | ngrex-report:--rules | ngrex-report:--sentences) echo files ;;
    ngrex-report:--measures) echo "list: $measures" ;;
    ngrex-report:--sort) echo "list: $columns $(printf '+%s ' $columns) $(printf -- '-%s ' $columns)" ;;
    ngrex-report:--top | ngrex-report:--min-frequency | ngrex-report:--where | ngrex-report:--memory | ngrex-report:--title | ngrex-report:--examples) echo text ;;
    ngrex-report:-[dm] | ngrex-report:--context-words | ngrex-report:--prefix | ngrex-report:--mask) echo text ;;
    ngrex-scale:-n) echo '2 3 4 5 6 7' ;;
    ngrex-scale:-cs) echo '0 1 2' ;;
    ngrex-scale:-[cdfios] | ngrex-scale:-cf | ngrex-scale:-fs | ngrex-scale:--work) echo files ;;
    ngrex-scale:-[mp] | ngrex-scale:-cw | ngrex-scale:-t[cefmlptz] | ngrex-scale:--jobs | ngrex-scale:--memory | ngrex-scale:--shard | ngrex-scale:--task | ngrex-scale:--of) echo text ;;
  esac
}

_ngrex_complete() {
  local program=${1##*/} current=$2 previous=$3
  local options value i
  case $program in
    ngrex)
      options='-c -cf -cs -cw -d -f -fs -i -m -n -o -p -s -ta -tc -te -tf -tl -tm -to -tp -tt -tz'
      ;;
    ngrex-import)
      options='-o --output --from --tag --relations --relation-map --print-relation-map --protect-lemmas --no-protect-lemmas --split --list --sentences --mask --check
        --strict --tag-table -q --quiet -h --help --version'
      ;;
    ngrex-table)
      options='-o --output --columns --cells --pattern --measures --sort --top --min-frequency --where --format --precision --na --bom --json-numbers --unsigned
        --per --groups --profile --locale --memory --ignore-case
        --merge --within --compare --contexts --statistics -h --help --version'
      ;;
    ngrex-examples)
      options='-i --list -d --prefix -m --mask -f --rules --context-sentences --context-words -o --output --where --ignore-case --min-frequency --sort --top --memory --pattern --examples --first
        --sentences --format --tree -h --help --version'
      ;;
    ngrex-report)
      options='-o --output --measures --sort --memory --top --min-frequency --where --ignore-case --title -s --statistics
        -i --list -d --prefix -m --mask -f --rules --context-sentences --context-words --examples --sentences -h --help --version'
      ;;
    ngrex-scale)
      options='--jobs --memory --work --drop --exact --keep-going --quiet --shard --task --of --help --version
        -c -cf -cs -cw -d -f -fs -i -m -n -o -p -s -ta -tc -te -tf -tl -tm -to -tp -tt -tz'
      ;;
  esac

  if [[ $program == ngrex-scale && $COMP_CWORD == 1 && $current != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'run write plan steps drop scan number map reduce arrange order count collect merge format' -- "$current")
    return
  fi

  # Bash makes words of their own of "=" and what is behind it.
  if [[ $previous == '=' || $current == '=' ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 1]}
    [[ $previous == '=' ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
    current=${current#=}
  fi
  value=$(_ngrex_value_of "$program" "$previous")
  for ((i = 1; i < COMP_CWORD; ++i)); do
    # Behind "--" there are operands only.
    [[ $program != ngrex && ${COMP_WORDS[i]} == -- ]] && value=files
  done

  COMPREPLY=()
  case $value in
    text) ;;
    files) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    list:*) _ngrex_complete_list "$current" "${value#list: }" ;;
    ?*) mapfile -t COMPREPLY < <(compgen -W "$value" -- "$current") ;;
    *)
      if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
      else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
      fi
      ;;
  esac
}

complete -o filenames -F _ngrex_complete ngrex ngrex-examples ngrex-import ngrex-report ngrex-scale ngrex-table
