# Pictures of fixed size from SVG files, drawn while the program is built.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(ICOTOOL icotool REQUIRED)

# Draws the SVG file into a PNG file of `side` x `side` pixels; `drawn` names it, with the ending of
# the former.
function(draw_picture svg side drawn)
  string(REGEX REPLACE "svg$" "png" png ${drawn})
  cmake_path(GET png PARENT_PATH folder)
  file(MAKE_DIRECTORY ${folder})
  cmake_path(ABSOLUTE_PATH svg)
  add_custom_command(
    OUTPUT ${png}
    COMMAND ${RSVG_CONVERT} --width ${side} --height ${side} --output ${png} ${svg}
    DEPENDS ${svg})
endfunction()

# Draws the SVG file in all sizes that Windows shows a program's icon in, into one file.
function(draw_icon svg icon)
  foreach(side 16 20 24 32 40 48 64 256)
    draw_picture(${svg} ${side} ${icon}.${side}.svg)
    list(APPEND drawn ${icon}.${side}.png)
  endforeach()
  add_custom_command(OUTPUT ${icon} COMMAND ${ICOTOOL} --create --output ${icon} ${drawn}
                     DEPENDS ${drawn})
endfunction()
