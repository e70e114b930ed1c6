# Completion of quillbox in fish.
complete -c quillbox -f
complete -c quillbox -l menu -d 'Open the menu at its icon, ready for the keyboard'
complete -c quillbox -l autostart -x -a 'on off' -d 'Start at login, or not any more'
complete -c quillbox -l help -d 'Show the options'
complete -c quillbox -l version -d 'Show the version'
