# Writes the desktop entry and the bus service for the prefix that is installed to, then lets the desktop look again.
# Run by `cmake --install`, with plovendix_source, plovendix_mpv and plovendix_bindir set.
get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
set(target "$ENV{DESTDIR}${prefix}")

# Writes the template's file NAME for a program of the prefix into a folder of its share.
function(plovendix_entry template program_name folder)
    set(program "${prefix}/${plovendix_bindir}/${program_name}")
    # The bus reads a command line as a shell does; inside double quotes these keep their meaning.
    string(REGEX REPLACE "([\\\\\"`$])" "\\\\\\1" escaped "${program}")
    set(quoted_program "\"${escaped}\"")
    # A desktop entry's value is unescaped once more before that, and "%" begins a field code.
    string(REPLACE "\\" "\\\\" entry_program "${quoted_program}")
    string(REPLACE "%" "%%" entry_program "${entry_program}")
    # Desktops look for the first word as it stands, before "%%" is read as "%": there it must be another program.
    if(program MATCHES "%")
        set(entry_program [[/bin/sh -c "exec \\"\\$0\\" \\"\\$@\\"" ]] ${entry_program})
        list(JOIN entry_program "" entry_program)
    endif()
    if(program MATCHES "^[A-Za-z0-9_/.+-]+$")
        set(quoted_program "${program}")
        set(entry_program "${program}")
    endif()
    get_filename_component(name "${template}" NAME_WLE)
    set(written "${target}/share/${folder}/${name}")
    file(MAKE_DIRECTORY "${target}/share/${folder}")
    message(STATUS "Installing: ${written}")
    configure_file("${template}" "${written}" @ONLY)
    file(CHMOD "${written}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()
plovendix_entry("${plovendix_source}/com.quorvane.Plovendix.desktop.in" plovendix applications)
plovendix_entry("${plovendix_source}/com.quorvane.Plovendix.service.in" plovendix dbus-1/services)
plovendix_entry("${plovendix_mpv}/com.quorvane.Plovendix.mpv.desktop.in" plovendix-mpv-reply applications)

# A package's own scripts do the rest when it is unpacked.
if(DEFINED ENV{DESTDIR})
    return()
endif()

function(plovendix_refresh command)
    find_program(plovendix_${command} ${command})
    if(plovendix_${command})
        execute_process(COMMAND "${plovendix_${command}}" ${ARGN} OUTPUT_QUIET ERROR_QUIET)
    else()
        message(STATUS "Not refreshed, because ${command} is not installed")
    endif()
endfunction()
plovendix_refresh(update-desktop-database "${prefix}/share/applications")
if(EXISTS "${prefix}/share/mime/packages")
    plovendix_refresh(update-mime-database "${prefix}/share/mime")
endif()
# Without a theme of its own in the prefix there is no cache to refresh, and icons are looked up as files.
if(EXISTS "${prefix}/share/icons/hicolor/index.theme")
    plovendix_refresh(gtk-update-icon-cache -q -f "${prefix}/share/icons/hicolor")
endif()
# A folder that was not there when the session began is not watched yet.
if(DEFINED ENV{DBUS_SESSION_BUS_ADDRESS})
    plovendix_refresh(dbus-send --session --type=method_call --dest=org.freedesktop.DBus / org.freedesktop.DBus.ReloadConfig)
endif()
