# Completion of inv for fish: put it into share/fish/vendor_completions.d.

set -l commands summary show get list verify export diff unpack report load redact
set -l first "not __fish_seen_subcommand_from $commands"
complete -c inv -n $first -f
complete -c inv -n $first -a summary -d 'Say what a machine is: one screen, or a line each'
complete -c inv -n $first -a show -d 'Show the tree, or a part of it, with its paths'
complete -c inv -n $first -a get -d 'Print bare values; status 1 when a path names none'
complete -c inv -n $first -a list -d 'Show the container: sections, offsets, sizes, header'
complete -c inv -n $first -a verify -d 'Say whether a console can import files, and where not'
complete -c inv -n $first -a export -d 'Write files as JSON, NDJSON, CSV or plain text'
complete -c inv -n $first -a diff -d 'Compare two scans; status 1 when they differ'
complete -c inv -n $first -a unpack -d 'Take a file apart; a debug file becomes a simulated Mac'
complete -c inv -n $first -a report -d 'Make a page of HTML that needs no network'
complete -c inv -n $first -a load -d 'Load files into an SQLite database'
complete -c inv -n $first -a redact -d 'Replace what tells whose machine it is'
complete -c inv -n $first -l version -d 'Tell the version'
complete -c inv -s h -l help -d 'Tell about the command'

complete -c inv -n "__fish_seen_subcommand_from $commands" -l max-size -x -d 'Refuse sections of more than this size'
complete -c inv -n '__fish_seen_subcommand_from show' -l section -x -a 'snapshot asset' -d 'Which trees to show'
complete -c inv -n '__fish_seen_subcommand_from show' -l depth -x -d 'Show so many levels'
complete -c inv -n '__fish_seen_subcommand_from verify' -s q -l quiet -d 'Only the exit status'
complete -c inv -n '__fish_seen_subcommand_from export' -s f -l format -x -a 'json ndjson csv zxml' -d 'The form to write'
complete -c inv -n '__fish_seen_subcommand_from export report redact' -s o -l output -r -F -d 'Where to write'
complete -c inv -n '__fish_seen_subcommand_from diff' -l all -d 'Also what changes in every scan'
complete -c inv -n '__fish_seen_subcommand_from diff' -l json -d 'As an array of objects'
complete -c inv -n '__fish_seen_subcommand_from report' -l compare -d 'Show what changed from OLD to NEW'
complete -c inv -n '__fish_seen_subcommand_from redact' -l key -x -d 'What the pseudonyms depend on'
complete -c inv -n '__fish_seen_subcommand_from redact' -l drop-opaque -d 'Leave out sections that are no trees'
