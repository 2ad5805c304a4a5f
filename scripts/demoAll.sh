# Every origin once, on a small source; part of scripts/demo, whose functions it uses.

results=$folder/esiti.db
started=$SECONDS

# prepare FOLDER COMPANY ORIGIN: the company of an origin, with the rows that are there before its first import.
prepare() {
    build/dev/cli/quadrix-import-cli --config "$1" create-database --company "$2" --name "Demo $3" >/dev/null
    sqlite3 -bail "$folder/quadrix.db" <"$1/quadrix.sql"
}

# keep FILE ORIGIN PROCEDURE CODE: takes a result into the table of all and shows it as a line of that table.
keep() {
    sqlite3 "$results" "
        WITH told AS (SELECT CAST(readfile('$1') AS TEXT) AS text),
             result AS (SELECT CASE WHEN json_valid(text) THEN text ELSE '{}' END AS json FROM told)
        INSERT INTO esiti SELECT '${2//\'/\'\'}', '$3', COALESCE(json ->> 'sourceRows', 0), COALESCE(json ->> 'inserted', 0),
            COALESCE(json ->> 'updated', 0), COALESCE(json ->> 'skipped', 0), COALESCE(json ->> 'givenUp', 0),
            COALESCE(json ->> 'seconds', 0), $4,
            CASE $4 WHEN 0 THEN 'completato' WHEN 4 THEN 'completato con riserve' WHEN 3 THEN 'ANNULLATO'
                ELSE 'FALLITO: ' || replace(COALESCE(json ->> '\$.errors[0]', 'vedi $1'), char(10), ' ')
            END FROM result;
        SELECT printf('%-22s %-38s %7d %8d %10d %7d %11d %7.2f  %s', origine, procedura, righe, inserite, aggiornate,
            saltate, abbandonate, secondi, esito) FROM esiti ORDER BY rowid DESC LIMIT 1"
}

build/dev/tests/quadrix-demo-sources "$folder"
export ODBCINI=$folder/odbc.ini
sqlite3 "$results" "CREATE TABLE esiti (origine, procedura, righe, inserite, aggiornate, saltate, abbandonate, secondi,
    uscita, esito)"

printf '%-22s %-38s %7s %8s %10s %7s %11s %7s  %s\n' Origine Procedura righe inserite aggiornate saltate abbandonate \
    secondi esito
last=
while IFS=$'\t' read -r -a words; do
    at=${words[0]} company=${words[1]} origin=${words[2]} procedure=${words[3]} data=${words[4]}
    [ "$company" = "$last" ] || prepare "$at" "$company" "$origin"
    last=$company
    code=0
    build/dev/cli/quadrix-import-cli --config "$at" --json import --company "$company" --origin "$origin" \
        --data "$data" --errors ignore "${words[@]:5}" </dev/null >"$at/$data.json" 2>"$at/$data.txt" ||
        code=$?
    keep "$at/$data.json" "$origin" "$procedure" "$code"
done <"$folder/imports.tsv"

echo
sqlite3 -box "$results" "SELECT COUNT(DISTINCT origine) AS origini, COUNT(*) AS procedure, SUM(righe) AS righe,
    SUM(inserite) AS inserite, SUM(aggiornate) AS aggiornate, SUM(saltate) AS saltate, SUM(abbandonate) AS abbandonate,
    SUM(uscita NOT IN (0, 4)) AS fallite FROM esiti"
echo "Tempo: $((SECONDS - started)) s"
echo "Database: $folder/quadrix.db"
echo "Risultati: $results; sorgenti, impostazioni e messaggi: $folder/D*"
[ "$(sqlite3 "$results" "SELECT COUNT(*) FROM esiti WHERE uscita NOT IN (0, 4)")" = 0 ]
