# Designs that Verilator compiles, with tesk.vpi in them.
#
#   tesk_add_verilated(NAME SOURCES FILE... TOP_MODULE MODULE [TRACE | TRACE_FST] [VERILATOR_ARGS ARGUMENT...])
#
# makes a program NAME of a design in Verilog: `NAME +tesk=bench.toml +dump=waves.fst`. VERILATOR_ARGS are for Verilator, such
# as --timing for a design with delays.
function(tesk_add_verilated name)
    cmake_parse_arguments(PARSE_ARGV 1 TESK "TRACE;TRACE_FST" "TOP_MODULE" "SOURCES;VERILATOR_ARGS")
    if(NOT TESK_SOURCES OR NOT TESK_TOP_MODULE)
        message(FATAL_ERROR "tesk_add_verilated(${name}): give SOURCES and TOP_MODULE")
    endif()
    find_package(verilator REQUIRED HINTS $ENV{VERILATOR_ROOT})
    cmake_path(SET folder NORMALIZE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../../tesk)
    set(module ${folder}/tesk.vpi)
    if(TARGET tesk_vpi)  # where it is built
        set(folder ${CMAKE_CURRENT_FUNCTION_LIST_DIR})
        set(module $<TARGET_FILE:tesk_vpi>)
    endif()
    add_executable(${name} ${folder}/runverilated.cpp)
    set(waves)
    foreach(kind TRACE TRACE_FST)
        if(TESK_${kind})
            list(APPEND waves ${kind})
        endif()
    endforeach()
    verilate(${name} SOURCES ${TESK_SOURCES} TOP_MODULE ${TESK_TOP_MODULE} PREFIX V${TESK_TOP_MODULE} ${waves}
        VERILATOR_ARGS --vpi --public-flat-rw ${TESK_VERILATOR_ARGS})
    target_compile_definitions(${name} PRIVATE TESK_TOP=V${TESK_TOP_MODULE} TESK_MODULE="${module}")
    target_link_libraries(${name} PRIVATE ${CMAKE_DL_LIBS})
    # The module takes the functions of the interface from the program.
    set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON CXX_VISIBILITY_PRESET default)
endfunction()
