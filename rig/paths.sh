# shellcheck shell=bash
# To be sourced. Where the rig lives: one for all checkouts of a user. Clones of
# the template prefix are made of hard links and therefore live there too.
HSW_RIG=${HSW_RIG:-${XDG_CACHE_HOME:-$HOME/.cache}/hivesweep-rig}
export HSW_RIG
