# Filled by the package rules below once the targets exist.
