#!/usr/bin/env bash
# The example playbook drives vpsettings through ansible-playbook on a throwaway profile: the
# first run changes, the second finds nothing to change, check mode writes no byte, and the
# tool reads back what the policy says.
# Usage: ansible_test.sh VPSETTINGS PLAYBOOK
set -euo pipefail
vpsettings=$1
playbook=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
profile=$work/profile
mkdir -p "$profile/Roaming/Tessaline/Vantrel Player/tessaline.com/support/vantrelplayer/sys" \
  "$profile/Local" "$profile/sys"
folders=(--appdata "$profile/Roaming" --local-appdata "$profile/Local" --system-dir "$profile/sys")
vp() { "$vpsettings" "${folders[@]}" "$@"; }

# No facts, no retry files, nothing written outside the work folder, output as JSON.
export ANSIBLE_HOME=$work/ansible ANSIBLE_LOCAL_TEMP=$work/ansible/tmp \
  ANSIBLE_REMOTE_TEMP=$work/ansible/remote ANSIBLE_GATHERING=explicit \
  ANSIBLE_STDOUT_CALLBACK=json ANSIBLE_PYTHON_INTERPRETER=/usr/bin/python3 \
  ANSIBLE_LOCALHOST_WARNING=false ANSIBLE_INVENTORY_UNPARSED_WARNING=false \
  ANSIBLE_RETRY_FILES_ENABLED=false ANSIBLE_NOCOLOR=1
extra=$(python3 -c 'import json, sys
print(json.dumps({"vpsettings": sys.argv[1], "vp_policy_on_host": sys.argv[2],
                  "vp_folder_options": sys.argv[3:]}))' "$vpsettings" "$work/policy.json" "${folders[@]}")

# Runs the playbook; prints "changed=N failed=N" of the host.
play() {
  ansible-playbook -i localhost, -c local -e "$extra" "$@" "$playbook" >"$work/play.json" || true
  python3 -c 'import json, sys
stats = json.load(open(sys.argv[1]))["stats"]["localhost"]
print("changed=%d failed=%d" % (stats["changed"], stats["failures"] + stats["unreachable"]))' \
    "$work/play.json" || cat "$work/play.json"
}
expect() {
  if [ "$2" != "$3" ]; then
    printf 'FAIL %s\n  expected: %s\n  got:      %s\n' "$1" "$3" "$2"
    cat "$work/play.json"
    exit 1
  fi
}
snapshot() { find "$profile" -type f -exec stat -c '%n %s %Y.%y' {} + -exec md5sum {} + | sort; }

vp site old-intranet.example.com p2p allow
vp trusted add 'C:\Temp'
vp admin set SilentAutoUpdateEnable 1
expect "first run" "$(play)" "changed=1 failed=0"
expect "second run" "$(play)" "changed=0 failed=0"
expect "sites" "$(vp sites)" "$(printf 'ads.example.net\tblock\task\task\tblock\t0 bytes\nmeet.example.com\task\tallow\tallow\task\t0 bytes')"
expect "trusted" "$(vp trusted)" 'C:\Training\course.vtm'
expect "tss.cfg" "$(vp admin)" "AutoUpdateDisable=1"
expect "globals" "$(vp show | grep -E '^(defaultklimit|disallowP2PUplink)' | sort)" \
  "$(printf 'defaultklimit\tnumber\t0\ndisallowP2PUplink\tboolean\ttrue')"

vp set defaultklimit 100
before=$(snapshot)
expect "check mode" "$(play --check)" "changed=1 failed=0"
expect "bytes after check mode" "$(snapshot)" "$before"
echo "PASS"
