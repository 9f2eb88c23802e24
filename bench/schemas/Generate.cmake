# Code of the peers that is generated from the schemas: variables that list the files, made when they
# are needed.
#
#     zrp_protobuf_files, zrp_protobuf_lite_files, zrp_protobuf_no_oneof_files, zrp_nanopb_files

find_package(Protobuf REQUIRED)
find_program(NANOPB_GENERATOR protoc-gen-nanopb REQUIRED)

set(zrp_schemas ${CMAKE_CURRENT_LIST_DIR})
set(zrp_generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${zrp_generated})

# Variants of the schema under other names: for the lite library, and with optional fields instead of
# oneofs (inside of which lines are indented by four).
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${zrp_schemas}/zrp.proto)
file(READ ${zrp_schemas}/zrp.proto zrp_schema)
string(REPLACE "package zrp_peer;"
    "package zrp_peer_lite;\noption optimize_for = LITE_RUNTIME;" zrp_lite "${zrp_schema}")
string(REPLACE "package zrp_peer;" "package zrp_peer_no_oneof;" zrp_no_oneof "${zrp_schema}")
string(REGEX REPLACE "\n  oneof [a-z_]+ {\n((    [^\n]+\n)+)  }" "\n\\1" zrp_no_oneof "${zrp_no_oneof}")
string(REGEX REPLACE "\n    ([A-Za-z0-9]+ [a-z0-9_]+ = )" "\n  optional \\1" zrp_no_oneof
    "${zrp_no_oneof}")
file(CONFIGURE OUTPUT ${zrp_generated}/zrp_lite.proto CONTENT "${zrp_lite}" @ONLY)
file(CONFIGURE OUTPUT ${zrp_generated}/zrp_no_oneof.proto CONTENT "${zrp_no_oneof}" @ONLY)

function(zrp_generate_protobuf name folder files)
    add_custom_command(
        OUTPUT ${zrp_generated}/${name}.pb.cc ${zrp_generated}/${name}.pb.h
        COMMAND protobuf::protoc -I${folder} --cpp_out=${zrp_generated} ${folder}/${name}.proto
        DEPENDS ${folder}/${name}.proto)
    set(${files} ${zrp_generated}/${name}.pb.cc ${zrp_generated}/${name}.pb.h PARENT_SCOPE)
endfunction()
zrp_generate_protobuf(zrp ${zrp_schemas} zrp_protobuf_files)
zrp_generate_protobuf(zrp_lite ${zrp_generated} zrp_protobuf_lite_files)
zrp_generate_protobuf(zrp_no_oneof ${zrp_generated} zrp_protobuf_no_oneof_files)

set(zrp_nanopb_files ${zrp_generated}/zrp.nanopb.c ${zrp_generated}/zrp.nanopb.h)
add_custom_command(
    OUTPUT ${zrp_nanopb_files}
    COMMAND protobuf::protoc -I${zrp_schemas} --plugin=protoc-gen-nanopb=${NANOPB_GENERATOR}
        --nanopb_opt=-e.nanopb --nanopb_opt=-f${zrp_schemas}/zrp.options
        --nanopb_out=${zrp_generated} ${zrp_schemas}/zrp.proto
    DEPENDS ${zrp_schemas}/zrp.proto ${zrp_schemas}/zrp.options)

# nanopb gets smaller and faster with PB_BUFFER_ONLY, which only its sources allow. Without them its
# packaged library is measured.
set(QUORVA_ZRP_BENCH_NANOPB "" CACHE PATH "Sources of nanopb, as nanopb_source.sh unpacks them")

function(zrp_add_nanopb target)
    target_sources(${target} PRIVATE ${zrp_nanopb_files})
    if(QUORVA_ZRP_BENCH_NANOPB)
        target_sources(${target} PRIVATE
            ${QUORVA_ZRP_BENCH_NANOPB}/pb_common.c
            ${QUORVA_ZRP_BENCH_NANOPB}/pb_decode.c
            ${QUORVA_ZRP_BENCH_NANOPB}/pb_encode.c)
        target_include_directories(${target} SYSTEM BEFORE PUBLIC ${QUORVA_ZRP_BENCH_NANOPB})
        target_compile_definitions(${target} PUBLIC PB_BUFFER_ONLY PB_NO_ERRMSG)
    else()
        find_library(NANOPB_STATIC libprotobuf-nanopb.a REQUIRED)
        target_link_libraries(${target} PUBLIC ${NANOPB_STATIC})
    endif()
endfunction()
