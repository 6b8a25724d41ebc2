# Makes one page of page.html, map.css, map.js and placement.base64, and a C++ source of it:
#     cmake -DFOLDER=write/page -DOUTPUT=PagePieces.cpp -P EmbedPage.cmake

# The source expression of a content security policy for a script or style: its SHA-256, in base64.
function(hash_source content result)
    string(SHA256 hex "${content}")
    set(digits "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    set(base64)
    foreach(start RANGE 0 63 3)  # three hexadecimal digits are two of base64; after 63 of 64, one and two bytes of padding
        string(SUBSTRING "${hex}00" ${start} 3 three)
        math(EXPR bits "0x${three}")
        math(EXPR high "${bits} >> 6")
        math(EXPR low "${bits} & 63")
        string(SUBSTRING ${digits} ${high} 1 first)
        string(SUBSTRING ${digits} ${low} 1 second)
        string(APPEND base64 ${first}${second})
    endforeach()
    string(SUBSTRING ${base64} 0 43 base64)
    set(${result} "sha256-${base64}=" PARENT_SCOPE)
endfunction()

file(READ ${FOLDER}/page.html page)
file(READ ${FOLDER}/map.css style)
file(READ ${FOLDER}/map.js script)
file(READ ${FOLDER}/placement.base64 module)
hash_source("${script}" scriptHash)
hash_source("${style}" styleHash)
string(REPLACE "@SCRIPT_HASH@" "${scriptHash}" page "${page}")
string(REPLACE "@STYLE_HASH@" "${styleHash}" page "${page}")
string(REPLACE "@MODULE@" "${module}" page "${page}")
string(REPLACE "@STYLE@" "${style}" page "${page}")
string(REPLACE "@SCRIPT@" "${script}" page "${page}")

set(pieceLength 16000)  # compilers need not take texts of more than 65,536 characters
string(LENGTH "${page}" length)
set(source "#include \"mindmap/write/HtmlWriter.h\"\n\nnamespace mindmap {\n\nconst std::string_view kPagePieces[] = {\n")
foreach(start RANGE 0 ${length} ${pieceLength})
    string(SUBSTRING "${page}" ${start} ${pieceLength} piece)
    string(APPEND source "R\"page(${piece})page\",\n")
endforeach()
string(APPEND source "};\nconst std::size_t kPagePieceCount = std::size(kPagePieces);\n\n}  // namespace mindmap\n")
file(WRITE ${OUTPUT} "${source}")
