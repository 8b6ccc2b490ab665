#!/usr/bin/env bash
# with-postgres.sh CMD [ARGS...]
# Starts a throwaway PostgreSQL cluster in a temporary folder, listening on
# 127.0.0.1 on a free port, exports its ODBC connection string in
# VELDA_PG_CONN, runs CMD, then stops the server and deletes the folder (also
# when CMD fails or is interrupted). Exits with CMD's status.
set -uo pipefail

if [[ $# -eq 0 ]]; then
  echo "usage: $0 CMD [ARGS...]" >&2
  exit 2
fi

pg_bin=""
for dir in /usr/lib/postgresql/*/bin; do
  [[ -x "$dir/pg_ctl" ]] && pg_bin="$dir"
done
if [[ -z "$pg_bin" ]]; then
  pg_bin=$(dirname "$(command -v pg_ctl 2>/dev/null || echo /nonexistent/pg_ctl)")
fi
if [[ ! -x "$pg_bin/pg_ctl" ]]; then
  echo "with-postgres: PostgreSQL server binaries not found (run scripts/install-deps.sh)" >&2
  exit 1
fi

if ! odbcinst -q -d -n "PostgreSQL ANSI" >/dev/null 2>&1; then
  echo "with-postgres: the ODBC driver 'PostgreSQL ANSI' is not registered (run scripts/install-deps.sh)" >&2
  exit 1
fi

cluster=$(mktemp -d "${TMPDIR:-/tmp}/velda-pg-XXXXXX") || exit 1
data="$cluster/data"

# The server refuses to run as root: the cluster then belongs to postgres.
as_owner() {
  if [[ $(id -u) -eq 0 ]]; then
    (cd "$cluster" && runuser -u postgres -- "$@")
  else
    (cd "$cluster" && "$@")
  fi
}

if [[ $(id -u) -eq 0 ]]; then
  chown postgres: "$cluster"
  chmod 700 "$cluster"
fi

stop_and_delete() {
  if [[ -f "$data/postmaster.pid" ]]; then
    as_owner "$pg_bin/pg_ctl" -D "$data" -m immediate -w stop >/dev/null 2>&1
  fi
  rm -rf "$cluster"
}
trap stop_and_delete EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

if ! as_owner "$pg_bin/initdb" -D "$data" -U postgres --auth=trust -E UTF8 --locale=C --no-sync >"$cluster/initdb.log" 2>&1; then
  echo "with-postgres: initdb failed:" >&2
  cat "$cluster/initdb.log" >&2
  exit 1
fi

port_in_use() {
  (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

started=0
for attempt in 1 2 3 4 5 6 7 8 9 10; do
  port=$((20000 + (RANDOM * 32768 + RANDOM) % 40000))
  port_in_use "$port" && continue
  if as_owner "$pg_bin/pg_ctl" -D "$data" -l "$cluster/server.log" -w -t 60 \
      -o "-c listen_addresses=127.0.0.1 -p $port -k $cluster -c fsync=off -c full_page_writes=off" \
      start >/dev/null 2>&1; then
    started=1
    break
  fi
done
if [[ $started -ne 1 ]]; then
  echo "with-postgres: the server did not start:" >&2
  cat "$cluster/server.log" >&2 2>/dev/null
  exit 1
fi

export VELDA_PG_CONN="Driver=PostgreSQL ANSI;Server=127.0.0.1;Port=$port;Database=postgres;Uid=postgres;Pwd=;UseDeclareFetch=1;Fetch=10000"

"$@"
exit $?
