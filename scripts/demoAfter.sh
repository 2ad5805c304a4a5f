# The way from a first import, with rows given up and codes open, to none of either; part of scripts/demo, whose
# functions it uses.

# step WORD...: shows a command and runs it. Rows given up, open codes and a page that differs are what this way is about.
step() {
    echo
    echo "> quadrix-import-cli $*"
    local code=0
    "${cli[@]}" "$@" </dev/null || code=$?
    [ "$code" = 0 ] || echo "Codice di uscita: $code"
}

# mended RUN EXPRESSION...: writes the rows that a run gave up into a file, mends it there and imports it.
mended() {
    local run=$1 file=$folder/scarti-$1.csv
    shift
    step history --run "$run" --rejects "$file"
    sed -i -E "${@/#/-e}" "$file"
    step import --rejects-of "$run" --mended "$file" --errors ignore
}

which=(--company X01 --origin Gescom)

company X01 "Demo dopo l'importazione" gescom 500 /gescom.db
# What somebody has typed wrong at the source; the documents of every kind bear the numbers 1, 2, 3...
sqlite3 "$folder/gescom/gescom.db" "
    UPDATE ARCLFR SET SC1CLFOR = 'dieci' WHERE CODCLFOR IN ('000004', '000011');
    UPDATE ARTICOLI SET PVARTICO = '12,5O' WHERE ROWID IN (8, 20, 33);
    UPDATE RIEMOV SET QTRIEMOV = 'x' WHERE RDRIEMOV IN (1, 3) AND CSRIEMOV <> '97';"
for data in cli art dis doc; do
    import X01 Gescom "$data" || true
done
step report "${which[@]}" --output "$folder/prima.html"

step codes list "${which[@]}"
step codes export "${which[@]}" --out "$folder/codici.csv"
# As somebody fills it in: each code is made in Quadrix, but for the phase, which is one that Quadrix has.
phase=$(sqlite3 "$folder/quadrix.db" "SELECT CDLAV FROM X01_LAV_ORA ORDER BY CDLAV LIMIT 1")
sed -E -i -e "/^arcfas;/s/(;codice di [^;]*;)[^;]*;/\1$phase;/" \
    -e '/^(ARCLFR|ARTICOLI);/s/^(([^;]*;){3})[^;]*;(.*;codice di [^;]*;)[^;]*;[^;]*;/\1Da rivedere;\3NUOVO;S;/' "$folder/codici.csv"
step codes import --company X01 --in "$folder/codici.csv"
step codes apply --company X01 --dry-run
step codes apply --company X01
step codes list "${which[@]}"

mended 1 's/;dieci;/;10;/'
mended 2 's/"12,5O"/"12,50"/'
mended 4 's/;x;/;10;/'
echo
echo "Le righe che nominavano gli articoli corretti si completano importando di nuovo distinte e documenti."
import X01 Gescom dis || true
import X01 Gescom doc || true
step history --company X01
step report "${which[@]}" --output "$folder/dopo.html"

echo
echo "Verbali: $folder/prima.html, $folder/dopo.html"
