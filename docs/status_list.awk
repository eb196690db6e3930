# For the API reference: writes the list of status codes out as the enumeration that it makes, each
# constant with its sentence.
/^#define KEP_STATUS_LIST/ { inList = 1; next }
inList && /^$/ { inList = 0 }
inList { list = list $0; next }
/^#define KEP_STATUS_CONSTANT/ {
    while (match(list, /KEP_STATUS\(-?[0-9]+, *[A-Za-z0-9]+, *[\\ ]*"[^"]*"\)/)) {
        row = substr(list, RSTART, RLENGTH)
        list = substr(list, RSTART + RLENGTH)
        split(row, field, /[(,]/)
        gsub(/^[^"]*"|"\)$/, "", row)
        print "   " field[3] " = " field[2] ", /**< " row " */"
    }
    next
}
/^    KEP_STATUS_LIST|^#undef KEP_STATUS_CONSTANT/ { next }
{ print }
