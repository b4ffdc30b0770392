# Completion of velkaro-scanner for fish: put it into share/fish/vendor_completions.d.

complete -c velkaro-scanner -f
complete -c velkaro-scanner -a -silent -d 'Scan without asking, and print for a calling program'
complete -c velkaro-scanner -a -log -d 'Print the stages of the scan'
complete -c velkaro-scanner -a -debug -d 'Save what the system profiler printed'
complete -c velkaro-scanner -a -extended -d 'Also collect what only newer systems report'
complete -c velkaro-scanner -a -ip: -d 'The address of the network adapter to use'
complete -c velkaro-scanner -a -login: -d 'A text to store in the file'
complete -c velkaro-scanner -a -without: -d 'What to leave out, separated by commas'
complete -c velkaro-scanner -s h -l help -d 'Print the options and what they do'
complete -c velkaro-scanner -l version -d 'Print the version'
