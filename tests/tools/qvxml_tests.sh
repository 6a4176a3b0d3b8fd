#!/bin/sh
# Runs the qvxml tool on the purchase-order sample and on small documents made here.
# Usage: qvxml_tests.sh QVXML ORDER_XML. Non-ASCII text needs a UTF-8 locale: LC_ALL=C.UTF-8.
set -u
QVXML=$1
ORDER=$2
export LC_ALL=C.UTF-8
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
cd "$WORK" || exit 1
failures=0

fail() {
    echo "FAIL: $1"
    failures=$((failures + 1))
}

# same NAME FILE1 FILE2
same() {
    cmp -s "$2" "$3" || { fail "$1"; diff "$2" "$3" | head -20; }
}

# run NAME EXPECTED_STATUS EXPECTED_STDERR COMMAND...: checks the exit status and the whole error text.
run() {
    name=$1 status=$2 expected=$3
    shift 3
    "$@" 2>err.txt
    got=$?
    [ "$got" = "$status" ] || fail "$name: status $got, expected $status"
    printf '%s' "$expected" >expected_err.txt
    same "$name: stderr" expected_err.txt err.txt
}

# Round trips of the sample through every form; the sample contains non-ASCII text.
run "xml to fi" 0 "" "$QVXML" convert "$ORDER" order.fi
run "fi to xml" 0 "" "$QVXML" convert order.fi from_fi.xml
run "xml to fi again" 0 "" "$QVXML" convert from_fi.xml again.fi
run "fi to xml again" 0 "" "$QVXML" convert again.fi again.xml
same "xml -> fi -> xml is stable" from_fi.xml again.xml
run "gzip fi" 0 "" "$QVXML" convert --gzip "$ORDER" order.fi.gz --to fi
run "gzip fi back" 0 "" "$QVXML" convert order.fi.gz gz.xml
same "gzip fi round trip" from_fi.xml gz.xml
run "zlib fi" 0 "" "$QVXML" convert "$ORDER" order.fiz --to fi --zlib --fi-suggested --fi-max-add 8
run "zlib fi back" 0 "" "$QVXML" convert order.fiz zlib.xml
same "zlib fi round trip" from_fi.xml zlib.xml
"$QVXML" convert - - --to fi <"$ORDER" | "$QVXML" convert - - >stdio.xml || fail "stdin/stdout pipe"
same "stdin/stdout round trip" from_fi.xml stdio.xml

# Text output keeps the document's prefixes; utf-16 and zlib text read back to the same.
run "xml to xml" 0 "" "$QVXML" convert "$ORDER" plain.xml
grep -q '^<po:purchaseOrder xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:po="urn:example:purchase-orders" xmlns:trk="urn:example:tracking" id="PO-2026-0042"' plain.xml ||
    fail "own prefixes"
grep -q '<po:issuedBy>Order desk, Zürich</po:issuedBy>' plain.xml || fail "non-ASCII text"
run "utf-16" 0 "" "$QVXML" convert "$ORDER" utf16.xml --encoding utf-16
[ "$(head -c 2 utf16.xml | od -An -tx1 | tr -d ' ')" = "fffe" ] || fail "utf-16 byte order mark"
run "utf-16 zlib" 0 "" "$QVXML" convert utf16.xml utf16.xml.z --zlib
run "utf-16 zlib back" 0 "" "$QVXML" convert utf16.xml.z utf8.xml
same "utf-16 round trip" plain.xml utf8.xml

# A small document whole: default namespace, a prefix, mixed content, layout options.
printf '<a xmlns="urn:d" xmlns:p="urn:p">x<p:b p:c="1">y</p:b>z<c/></a>' >mixed.xml
run "compact" 0 "" "$QVXML" convert mixed.xml compact.xml --compact --no-declaration
printf '<a xmlns="urn:d" xmlns:p="urn:p">xz<p:b p:c="1">y</p:b><c/></a>' >expected.xml
same "compact output" expected.xml compact.xml
run "crlf" 0 "" "$QVXML" convert --crlf mixed.xml crlf.xml
printf '<?xml version="1.0" encoding="UTF-8"?>\r\n<a xmlns="urn:d" xmlns:p="urn:p">xz\t<p:b p:c="1">y</p:b>\r\n\t<c/>\r\n</a>\r\n' \
    >expected.xml
same "crlf output" expected.xml crlf.xml

# inspect, whole.
"$QVXML" inspect "$ORDER" >inspect.txt
cat >expected.txt <<'END'
form: XML text
size: 1839 bytes
elements: 37
attributes: 10
texts: 29
maximum depth: 3
distinct names: 38
namespaces: 3
  http://www.w3.org/2001/XMLSchema-instance (xsi)
  urn:example:purchase-orders (po)
  urn:example:tracking (trk)
elements with mixed content: 0
END
same "inspect sample" expected.txt inspect.txt
"$QVXML" inspect order.fi.gz >inspect.txt
size=$(wc -c <order.fi.gz | tr -d ' ')
cat >expected.txt <<END
form: gzip of Fast Infoset
size: $size bytes
decompressed size: $(wc -c <order.fi | tr -d ' ') bytes
elements: 37
attributes: 10
texts: 29
maximum depth: 3
distinct names: 38
namespaces: 3
  http://www.w3.org/2001/XMLSchema-instance
  urn:example:purchase-orders
  urn:example:tracking
elements with mixed content: 0
END
same "inspect gzip fi" expected.txt inspect.txt
"$QVXML" inspect - <mixed.xml >inspect.txt
cat >expected.txt <<'END'
form: XML text
size: 63 bytes
elements: 3
attributes: 1
texts: 2
maximum depth: 2
distinct names: 4
namespaces: 2
  urn:d (default)
  urn:p (p)
elements with mixed content: 1
END
same "inspect mixed" expected.txt inspect.txt

# Refusals and usage errors.
printf '<a>\n<b></a>' >bad.xml
run "bad document" 1 "qvxml: bad.xml: mismatched tag at line 2
" "$QVXML" convert bad.xml out.xml
[ -e out.xml ] && fail "no output after a refusal"
run "bad from stdin" 1 "qvxml: <stdin>: mismatched tag at line 2
" sh -c "\"$QVXML\" inspect - <bad.xml"
run "missing input" 1 "qvxml: cannot open missing.xml: No such file or directory
" "$QVXML" inspect missing.xml
usage="Try 'qvxml --help'."
run "no command" 2 "qvxml: no command given
$usage
" "$QVXML"
run "unknown command" 2 "qvxml: unknown command 'show'
$usage
" "$QVXML" show
run "one file" 2 "qvxml: convert needs INPUT and OUTPUT
$usage
" "$QVXML" convert mixed.xml
run "bad --to" 2 "qvxml: --to takes xml or fi, not 'json'
$usage
" "$QVXML" convert mixed.xml o --to json
run "xml option on fi" 2 "qvxml: --crlf applies to XML output only
$usage
" "$QVXML" convert mixed.xml o.fi --crlf
run "both compressions" 2 "qvxml: --gzip and --zlib exclude each other
$usage
" "$QVXML" convert mixed.xml o --gzip --zlib
run "bad number" 2 "qvxml: --fi-max-add takes a number, not 'x'
$usage
" "$QVXML" convert mixed.xml o.fi --fi-max-add x
"$QVXML" inspect --help | grep -q "^Usage: qvxml inspect INPUT$" || fail "help"
"$QVXML" --version | grep -q "^qvxml [0-9]" || fail "version"

[ "$failures" = 0 ] && echo "all qvxml checks passed"
[ "$failures" = 0 ]
