# Converts SVG files to pictures of a fixed size during the build.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(ICOTOOL icotool REQUIRED)

# Converts the SVG file to a PNG file of `side` x `side` pixels. `drawn` is the path of the PNG
# file, but with the suffix "svg".
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

# Converts the SVG file to one icon file with all sizes in which Windows shows a program's icon.
function(draw_icon svg icon)
  foreach(side 16 20 24 32 40 48 64 256)
    draw_picture(${svg} ${side} ${icon}.${side}.svg)
    list(APPEND drawn ${icon}.${side}.png)
  endforeach()
  add_custom_command(OUTPUT ${icon} COMMAND ${ICOTOOL} --create --output ${icon} ${drawn}
                     DEPENDS ${drawn})
endfunction()
