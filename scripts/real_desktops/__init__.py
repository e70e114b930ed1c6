"""What the command scripts/real_desktop is made of: the desktops it knows, their sessions, and the walk through Quillbox there.
They stand on the modules beside that command, which have to be on the path."""
