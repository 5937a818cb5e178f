"""The rules that tools/check_tree holds the tree to; each module offers check(tree) -> lines of complaint."""
