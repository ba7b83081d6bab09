#!/bin/sh
# Installs the npm package that the integer-reading test compares against, outside the source
# tree: into $VNTTS_NPM_REFERENCE_DIR, by default ~/.cache/vntts/npm-reference. Needs node and
# npm; without them it says so and does nothing, and the test skips itself.
set -eu
dir="${VNTTS_NPM_REFERENCE_DIR:-$HOME/.cache/vntts/npm-reference}"
if ! command -v npm >/dev/null 2>&1 || ! command -v node >/dev/null 2>&1; then
  echo "install_number_reference: node/npm not found; the reference test will be skipped" >&2
  exit 0
fi
mkdir -p "$dir"
cd "$dir"
[ -f package.json ] || printf '{ "name": "vntts-npm-reference", "private": true }\n' > package.json
npm install --no-audit --no-fund --silent read-vietnamese-number@2.3.1
