# Completion of quillbox-defaults in fish.
function __quillbox_defaults_keys
    quillbox-defaults list 2>/dev/null | string replace -rf '^(\S+) = .*' '$1'
end
complete -c quillbox-defaults -f
set -l commands list read write delete export import
complete -c quillbox-defaults -n "not __fish_seen_subcommand_from $commands" -a list -d 'Every key with its value'
complete -c quillbox-defaults -n "not __fish_seen_subcommand_from $commands" -a read -d 'The value of a key'
complete -c quillbox-defaults -n "not __fish_seen_subcommand_from $commands" -a write -d 'Set a key'
complete -c quillbox-defaults -n "not __fish_seen_subcommand_from $commands" -a delete -d 'Remove a key'
complete -c quillbox-defaults -n "not __fish_seen_subcommand_from $commands" -a export -d 'Write the menu to a file'
complete -c quillbox-defaults -n "not __fish_seen_subcommand_from $commands" -a import -d 'Replace the menu by an exported one'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from read write delete" -a '(__quillbox_defaults_keys)'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from write" -l bool -x -a 'true false' -d 'A boolean'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from write" -l integer -x -d 'A whole number'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from write" -l real -x -d 'A number'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from write" -l string -x -d 'A text'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from export" -l json -d 'As JSON'
complete -c quillbox-defaults -n "__fish_seen_subcommand_from export import" -F
