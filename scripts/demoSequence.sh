# The import sequences on made-up data; part of scripts/demo, whose functions it uses.

# example COMPANY NAME ROWS: makes a source and prepares the company for its import.
example() {
    build/dev/examples/quadrix-examples "$2" --rows "$3" --seed 1 --company "$1" --out "$folder/$2" >/dev/null
    sqlite3 "$folder/quadrix.db" <"$folder/$2/quadrix.sql"
}

# source_section NAME DATABASE: a source of the sequence.
source_section() {
    printf '[%s]\r\nDatabasename=%s\r\n' "$1" "$2" >>"$folder/Sequence.ini"
}

# sequence_settings COMPANY-NAME: begins the description of a sequence.
sequence_settings() {
    printf '[SEQUENCE]\r\nAzienda=%s\r\nLogFile=%s.log\r\nDateStart=01/01/2024\r\n' "$1" "$1" >"$folder/Sequence.ini"
}

# sequence OPTION...: runs it. A step that is skipped makes the exit code 1, which is what this trial wants to see.
sequence() {
    echo
    local code=0
    "${cli[@]}" sequence --yes --errors ignore "$@" </dev/null || code=$?
    echo "Codice di uscita: $code"
}

# counts COMPANY TABLE...: the rows of tables.
counts() {
    local company=$1 table queries=()
    shift
    for table in "$@"; do
        queries+=("SELECT '${company}_$table' AS tabella, COUNT(*) AS righe FROM ${company}_$table")
    done
    rows "$(join "${queries[@]}")"
}

echo
echo "=== Sequenza 1: Arca Evolution, Lantek 24, AUTOMA e Ferrobrio, che è spento ==="
settings "$folder/lantek24/lantek24.db"
"${cli[@]}" create-database --company X04 --name "Demo Sequenza 1"
for source in arcaevolution lantek24 automa ferrobrio; do
    example X04 "$source" 100
done
# The sequence brings no articles: they are there before.
import X04 "Lantek 24" art
sequence_settings "Demo Sequenza 1"
source_section "ARCA EVOLUTION" arcaevolution/arca.db
source_section "LANTEK 24" lantek24/lantek24.db
source_section AUTOMA automa/automa.db
source_section FERROBRIO spento/ferrobrio.db # is not there
sequence --script 1 --answer no
echo
counts X04 CON_TRO ART_ICO DIS_BAS DIS_COM DOC_ACQ DOC_ACR ORD_PRO MOV_MAR UBI_MAG

echo
echo "=== Sequenza 2: Mexal, Tessera e Visual Space ==="
"${cli[@]}" create-database --company X05 --name "Demo Sequenza 2"
for source in mexal tessera visualspace; do
    example X05 "$source" 100
done
sequence_settings "Demo Sequenza 2"
source_section MEXAL mexal
source_section TESSERA tessera/tessera.db
source_section "VISUAL SPACE" visualspace/visualspace.db
# First the counterparties; then the articles, which name suppliers and which no sequence brings; then the rest.
sequence --script 2 --steps contropartimex
settings "$folder/mexal"
import X05 Mexal art
settings "$folder/tessera/tessera.db"
import X05 Tessera art
settings "$folder/visualspace/visualspace.db"
import X05 "Visual Space" art
sequence --script 2 --steps distintesic,ordclisic,distintevsp,documentimex,docvenvsp,docacqvsp,saldimex,saldivsp \
    --steps ubicazionimex,ubicazionivsp,query
echo
counts X05 CON_TRO ART_ICO DIS_BAS DIS_COM DOC_VEN DOC_VER DOC_ACQ DOC_ACR ORD_PRO MOV_MAR UBI_ART

echo
echo "Log delle sequenze: $folder/*.log"
echo "Database: $folder/quadrix.db"
