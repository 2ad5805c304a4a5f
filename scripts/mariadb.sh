# A private MariaDB server for tests: own data folder, own port, no service of the system is touched.
# To be sourced:  start_mariadb DIR  ...  stop_mariadb

# start_mariadb DIR: makes a server in DIR (created when missing), waits until it answers and exports
# QUADRIX_TEST_MARIADB as "host|port|user|password|database", and QUADRIX_TEST_MARIADB_CA, the file of the authority
# that has certified the server: it offers encryption, and does not ask for it.
start_mariadb() {
    PATH=$PATH:/usr/sbin
    mariadb_dir=$1
    local attempt
    mkdir -p "$mariadb_dir/data"
    mariadb-install-db --no-defaults --datadir="$mariadb_dir/data" --auth-root-authentication-method=normal \
        --skip-test-db --user="$(id -un)" >"$mariadb_dir/install.log" 2>&1 || {
        cat "$mariadb_dir/install.log" >&2
        return 1
    }
    make_certificates "$mariadb_dir/tls" || return 1
    # Another program may take the port between the look and the start: then the next one is tried.
    for attempt in 1 2 3 4 5; do
        mariadb_port=$(free_port)
        run_mariadb && break
        wait "$mariadb_pid" 2>/dev/null || true
        mariadb_pid=
    done
    if [ -z "$mariadb_pid" ]; then
        tail -20 "$mariadb_dir/server.log" >&2
        return 1
    fi
    mariadb --no-defaults --socket="$mariadb_dir/socket" --user=root <<'SQL'
CREATE DATABASE quadrix_test CHARACTER SET utf8mb4;
CREATE USER 'quadrix'@'%' IDENTIFIED BY 'pass;word}=1';
GRANT ALL ON *.* TO 'quadrix'@'%' WITH GRANT OPTION;
SQL
    export QUADRIX_TEST_MARIADB="127.0.0.1|$mariadb_port|quadrix|pass;word}=1|quadrix_test"
    export QUADRIX_TEST_MARIADB_CA=$mariadb_dir/tls/ca.pem
}

# make_certificates DIR: makes an authority of its own in DIR (ca.pem) and the certificate of a server at 127.0.0.1
# (server.pem, with server.key); also an authority that has certified nobody (foreign.pem).
make_certificates() {
    mkdir -p "$1"
    (
        cd "$1" || exit 1
        local name
        for name in ca foreign; do
            openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=Quadrix test $name" -keyout $name.key \
                -out $name.pem
        done
        openssl req -newkey rsa:2048 -nodes -subj "/CN=Quadrix test server" -keyout server.key -out server.csr
        echo "subjectAltName=IP:127.0.0.1" >server.ext
        openssl x509 -req -in server.csr -CA ca.pem -CAkey ca.key -CAcreateserial -days 2 -extfile server.ext \
            -out server.pem
    ) >"$1/openssl.log" 2>&1 || {
        cat "$1/openssl.log" >&2
        return 1
    }
}

# run_mariadb [OPTION...]: runs the server on its folder and port, also again after it has ended, and waits for it.
run_mariadb() {
    mariadbd --no-defaults --user="$(id -un)" --datadir="$mariadb_dir/data" --socket="$mariadb_dir/socket" \
        --pid-file="$mariadb_dir/pid" --port="$mariadb_port" --bind-address=127.0.0.1 --skip-name-resolve \
        --innodb-flush-log-at-trx-commit=0 --character-set-server=utf8mb4 \
        --ssl-cert="$mariadb_dir/tls/server.pem" --ssl-key="$mariadb_dir/tls/server.key" "$@" >"$mariadb_dir/server.log" 2>&1 &
    mariadb_pid=$!
    wait_for_mariadb
}

# stop_mariadb: ends the server that start_mariadb started and removes its folder. The end of the log of a server that
# had ended by itself is shown.
stop_mariadb() {
    [ -n "${mariadb_pid:-}" ] || return 0
    kill "$mariadb_pid" 2>/dev/null || {
        echo "The server of MariaDB had ended by itself:" >&2
        tail -50 "$mariadb_dir/server.log" >&2 || true
    }
    wait "$mariadb_pid" 2>/dev/null || true
    rm -rf "$mariadb_dir"
    mariadb_pid=
    unset QUADRIX_TEST_MARIADB QUADRIX_TEST_MARIADB_CA
}

# memory_folder: makes a folder for a server or for what tests write, and prints it; in memory where there is room, for
# databases on a disk wait for it with every table and every commit.
memory_folder() {
    local free
    free=$(df --output=avail /dev/shm 2>/dev/null | tail -1)
    if [ "${free:-0}" -gt 2000000 ] && [ -w /dev/shm ]; then
        mktemp -d -p /dev/shm
    else
        mktemp -d
    fi
}

free_port() {
    local port
    for port in $(shuf -i 20000-32000 -n 50); do
        (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || {
            echo "$port"
            return 0
        }
    done
    return 1
}

# Waits until the server answers; fails when it has ended instead.
wait_for_mariadb() {
    local tenths
    for tenths in $(seq 300); do
        kill -0 "$mariadb_pid" 2>/dev/null || return 1
        mariadb-admin --no-defaults --socket="$mariadb_dir/socket" --user=root ping >/dev/null 2>&1 && return 0
        sleep 0.1
    done
    kill "$mariadb_pid" 2>/dev/null || true
    return 1
}
