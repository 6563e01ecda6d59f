#!/usr/bin/env bash
# PostgreSQL and MariaDB for the `servers` test suite (SQL scripts loaded into real servers).
#
#   scripts/test-servers.sh install      installs the Debian packages postgresql and
#                                        mariadb-server when missing (root or sudo)
#   scripts/test-servers.sh start DIR    installs when missing, then starts both servers on
#                                        127.0.0.1 with fresh data in a temporary folder, each as
#                                        its own unprivileged user (postgres, mysql) when run as
#                                        root; writes DIR/servers.env for the tests
#   scripts/test-servers.sh stop DIR     stops the servers that `start` started and removes
#                                        their temporary folder
#
# A server that cannot be installed or started is recorded in servers.env as unavailable (the
# tests then skip with its reason); with CI=true that is an error instead. Nothing listens
# beyond the loopback interface, and the system's own database services are never started.
set -uo pipefail
# DIR as given, relative to the caller's folder.
state_dir() { realpath -m -- "${1:?usage: scripts/test-servers.sh start|stop DIR}"; }

log() { echo "test-servers: $*" >&2; }

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo -n"; fi

pg_bindir() {
    local dir
    dir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
    [ -n "$dir" ] && [ -x "$dir/initdb" ] && [ -x "$dir/pg_ctl" ] && echo "$dir"
}

have_postgresql() { [ -n "$(pg_bindir)" ] && command -v psql >/dev/null; }
have_mariadb() { command -v mariadbd >/dev/null || [ -x /usr/sbin/mariadbd ]; }

install_servers() {
    local packages=()
    have_postgresql || packages+=(postgresql)
    have_mariadb || packages+=(mariadb-server)
    command -v sqlite3 >/dev/null || packages+=(sqlite3)
    if [ ${#packages[@]} -eq 0 ]; then
        log "postgresql, mariadb-server and sqlite3 are installed"
        return 0
    fi
    log "installing ${packages[*]}"
    # Keep the packages' own services from starting (the standard policy-rc.d switch), so that
    # only the loopback servers of this script ever run.
    local policy=/usr/sbin/policy-rc.d made_policy=""
    if [ ! -e "$policy" ]; then
        if printf '#!/bin/sh\nexit 101\n' | $SUDO tee "$policy" >/dev/null 2>&1 && $SUDO chmod 755 "$policy"; then
            made_policy=1
        fi
    fi
    local status=0
    { $SUDO apt-get update -qq && DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends \
        "${packages[@]}"; } >/tmp/vellum-test-servers-apt.log 2>&1 || status=$?
    if [ -n "$made_policy" ]; then $SUDO rm -f "$policy"; fi
    if [ $status -ne 0 ]; then
        log "apt-get failed (status $status); see /tmp/vellum-test-servers-apt.log"
        tail -n 5 /tmp/vellum-test-servers-apt.log >&2
        return 1
    fi
    log "installed ${packages[*]}"
}

free_port() {
    local port
    for port in $(seq "$1" $(($1 + 200))); do
        if ! (exec 3<>/dev/tcp/127.0.0.1/"$port") 2>/dev/null; then
            echo "$port"
            return 0
        fi
    done
    return 1
}

# Runs a command as the server's own user when this script runs as root.
as_user() {
    local user=$1
    shift
    if [ "$(id -u)" -eq 0 ]; then runuser -u "$user" -- "$@"; else "$@"; fi
}

owned_dir() { # path user
    mkdir -p "$1"
    if [ "$(id -u)" -eq 0 ]; then chown "$2" "$1"; fi
    chmod 700 "$1"
}

start_postgresql() {
    local bindir port user=postgres
    bindir=$(pg_bindir) || { PG_REASON="PostgreSQL is not installed"; return 1; }
    if [ "$(id -u)" -eq 0 ] && ! id "$user" >/dev/null 2>&1; then PG_REASON="no user $user"; return 1; fi
    port=$(free_port 54320) || { PG_REASON="no free port"; return 1; }
    owned_dir "$DATA/pg" "$user"
    owned_dir "$DATA/pgsock" "$user"
    chmod 755 "$DATA/pgsock"
    if ! as_user "$user" "$bindir/initdb" -D "$DATA/pg" -U vellum -A trust -E UTF8 --locale=C.UTF-8 --no-sync \
        >"$DATA/pg-initdb.log" 2>&1; then
        PG_REASON="initdb failed: $(tail -n 1 "$DATA/pg-initdb.log")"
        return 1
    fi
    if ! as_user "$user" "$bindir/pg_ctl" -D "$DATA/pg" -l "$DATA/pg/server.log" -w -t 60 \
        -o "-c listen_addresses=127.0.0.1 -p $port -k $DATA/pgsock -c fsync=off -c synchronous_commit=off" \
        start </dev/null >/dev/null 2>&1; then
        PG_REASON="PostgreSQL did not start: $(tail -n 1 "$DATA/pg/server.log" 2>/dev/null)"
        return 1
    fi
    PG_PORT=$port
    PG_BINDIR=$bindir
    log "PostgreSQL on 127.0.0.1:$port as $( [ "$(id -u)" -eq 0 ] && echo "$user" || id -un)"
}

start_mariadb() {
    local port user=mysql mariadbd
    mariadbd=$(command -v mariadbd || echo /usr/sbin/mariadbd)
    [ -x "$mariadbd" ] || { MY_REASON="MariaDB is not installed"; return 1; }
    if [ "$(id -u)" -eq 0 ] && ! id "$user" >/dev/null 2>&1; then MY_REASON="no user $user"; return 1; fi
    port=$(free_port 53320) || { MY_REASON="no free port"; return 1; }
    owned_dir "$DATA/mariadb" "$user"
    owned_dir "$DATA/mariadbrun" "$user"
    chmod 755 "$DATA/mariadbrun"
    if ! as_user "$user" mariadb-install-db --no-defaults --datadir="$DATA/mariadb" --auth-root-authentication-method=normal \
        --skip-test-db >"$DATA/mariadb-install.log" 2>&1; then
        MY_REASON="mariadb-install-db failed: $(tail -n 1 "$DATA/mariadb-install.log")"
        return 1
    fi
    # In a session of its own, detached from the caller's terminal and output pipes.
    as_user "$user" setsid "$mariadbd" --no-defaults --datadir="$DATA/mariadb" --socket="$DATA/mariadbrun/mariadb.sock" \
        --port="$port" --bind-address=127.0.0.1 --pid-file="$DATA/mariadbrun/mariadb.pid" \
        --log-error="$DATA/mariadb.log" --innodb-buffer-pool-size=32M --innodb-flush-log-at-trx-commit=0 \
        --character-set-server=utf8mb4 --collation-server=utf8mb4_general_ci </dev/null >/dev/null 2>&1 &
    local i
    for i in $(seq 1 120); do
        if mariadb-admin --no-defaults --socket="$DATA/mariadbrun/mariadb.sock" -uroot ping >/dev/null 2>&1; then
            MY_PORT=$port
            log "MariaDB on 127.0.0.1:$port as $( [ "$(id -u)" -eq 0 ] && echo "$user" || id -un)"
            return 0
        fi
        sleep 0.5
    done
    MY_REASON="MariaDB did not start: $(tail -n 1 "$DATA/mariadb.log" 2>/dev/null)"
    return 1
}

stop_servers() {
    local state=$1/servers.env
    [ -f "$state" ] || return 0
    local DATA_DIR="" PG_OK="" PG_BINDIR="" MY_OK="" MY_SOCKET=""
    # shellcheck disable=SC1090
    . "$state"
    if [ -n "$DATA_DIR" ] && [ -d "$DATA_DIR" ]; then
        if [ "$PG_OK" = 1 ] || [ -f "$DATA_DIR/pg/postmaster.pid" ]; then
            as_user postgres "$PG_BINDIR/pg_ctl" -D "$DATA_DIR/pg" -m fast -w stop >/dev/null 2>&1 ||
                log "PostgreSQL did not stop cleanly"
        fi
        local pidfile="$DATA_DIR/mariadbrun/mariadb.pid"
        if [ -f "$pidfile" ]; then
            local pid
            pid=$(cat "$pidfile")
            kill "$pid" 2>/dev/null
            for _ in $(seq 1 60); do kill -0 "$pid" 2>/dev/null || break; sleep 0.5; done
        fi
        rm -rf "$DATA_DIR"
    fi
    rm -f "$state"
    log "stopped"
}

command=${1:-}
case "$command" in
install)
    install_servers
    ;;
start)
    STATE_DIR=$(state_dir "${2:-}") || exit 2
    mkdir -p "$STATE_DIR"
    stop_servers "$STATE_DIR" # a run that was not stopped leaves nothing behind
    install_servers || true
    DATA=$(mktemp -d "${TMPDIR:-/tmp}/vellum-servers.XXXXXX")
    chmod 755 "$DATA"
    PG_OK=0 MY_OK=0 PG_REASON="" MY_REASON="" PG_PORT="" PG_BINDIR="" MY_PORT=""
    start_postgresql && PG_OK=1
    start_mariadb && MY_OK=1
    {
        echo "DATA_DIR='$DATA'"
        echo "PG_OK=$PG_OK"
        echo "PG_REASON='${PG_REASON//\'/}'"
        echo "PG_HOST='$DATA/pgsock'"
        echo "PG_PORT='$PG_PORT'"
        echo "PG_USER='vellum'"
        echo "PG_BINDIR='$PG_BINDIR'"
        echo "PSQL='$(command -v psql)'"
        echo "MY_OK=$MY_OK"
        echo "MY_REASON='${MY_REASON//\'/}'"
        echo "MY_SOCKET='$DATA/mariadbrun/mariadb.sock'"
        echo "MY_PORT='$MY_PORT'"
        echo "MARIADB='$(command -v mariadb)'"
        echo "SQLITE3='$(command -v sqlite3)'"
    } >"$STATE_DIR/servers.env"
    if [ "$PG_OK" != 1 ] || [ "$MY_OK" != 1 ]; then
        log "unavailable: ${PG_REASON:+PostgreSQL: $PG_REASON. }${MY_REASON:+MariaDB: $MY_REASON.}"
        if [ "${CI:-}" = true ]; then
            log "CI=true: the servers must run"
            exit 1
        fi
    fi
    ;;
stop)
    STATE_DIR=$(state_dir "${2:-}") || exit 2
    stop_servers "$STATE_DIR"
    ;;
*)
    echo "usage: scripts/test-servers.sh install | start DIR | stop DIR" >&2
    exit 2
    ;;
esac
