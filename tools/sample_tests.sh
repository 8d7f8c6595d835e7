#!/bin/bash
# sample_tests.sh [--win64] - runs the samples of the zip file for users whose hosts exist in Wine, each in its own folder
# of an empty Wine prefix, and looks at what they print and write. Adds the results to the tally.

. "$(dirname "$0")/common.sh"
. "$tools/wine_session.sh"
. "$tools/package_session.sh"
. "$tools/sample_checks.sh"
. "$tools/tally.sh"

bits=$(bits_of "$@")

# script FILE ARGUMENT... - runs a sample in the script host; what it prints goes to the file "printed".
script() {
    local file=$1
    shift
    in_wine 120 cscript //nologo "$(windows_path "$installed/samples/$file")" "$@" >printed 2>&1
    sed -i 's/\r$//' printed
}

# program NAME ARGUMENT... - the same with a program. Fails when the program does.
program() {
    local name=$1 status=0
    shift
    in_wine 120 "$installed/samples/bin/$name.exe" "$@" >printed 2>&1 || status=$?
    sed -i 's/\r$//' printed
    return "$status"
}

# prints_as_shown SAMPLE - whether the sample printed each line that stands in it behind the sign >. A * stands for
# anything.
prints_as_shown() {
    local shown pattern
    mapfile -t shown < <(sed -nE "s,^ *('|//) > ,,p" "$installed/samples/$1" | sed 's,[][\\.^$],\\&,g; s,\*,.*,g')
    ((${#shown[@]})) || { echo "$1 shows nothing" && return 1; }
    for pattern in "${shown[@]}"; do
        grep -qx -- "$pattern" printed || { echo "$1 did not print: $pattern" && cat printed && return 1; }
    done
}

# Red to blue in five steps, as Visual Basic writes colours: blue, green, red.
steps=('0000FF' '4000BF' '800080' 'BF0040' 'FF0000')

first_steps_vbs() {
    in_folder first_steps_vbs
    script vbscript/first_steps.vbs sky.hdr sky.bmp &&
        prints_as_shown vbscript/first_steps.vbs && are_bitmaps sky.bmp && are_jpegs sky.bmp.jpg
}

# In the folder of the component, by the command that the README shows.
readme_command() {
    local command printed=$throwaway_folder/readme
    command=$(sed -nE 's/^    (cscript .*first_steps.*)$/\1/p' "$repo/README.md")
    (cd "$installed" && in_wine 120 cmd /c "$command") | tr -d '\r' >"$printed"
    mkdir -p "$throwaway_folder/readme_command"
    cd "$throwaway_folder/readme_command"
    cp "$printed" printed
    prints_as_shown vbscript/first_steps.vbs
}

# The examples of the reference, each with what it needs of the ones before.
reference_vbs() {
    in_folder reference_vbs
    local class
    for class in CVrxHDR CVrxImage ImageFX CVrxPattern CVrxFun VrxPreviewImg SettingsRegistry; do
        case $class in
            VrxPreviewImg) script "vbscript/reference/$class.vbs" sky.hdr ;;
            CVrxHDR) script "vbscript/reference/$class.vbs" sky.hdr . ;;
            CVrxImage | ImageFX) script "vbscript/reference/$class.vbs" evening.bmp . ;;
            *) script "vbscript/reference/$class.vbs" ;;
        esac
        prints_as_shown "vbscript/reference/$class.vbs" || return
    done
}

tour_vbs() {
    in_folder tour_vbs
    script vbscript/tour.vbs sky.hdr . &&
        prints '768 x 384' 'pixels again: 768 x 384' "colours: $(printf ' #%s' "${steps[@]}")" \
            'error 1 from CVrxHDR::Import: File Type Wrong!' 'done' &&
        are_bitmaps sky_tour.bmp && are_jpegs sky_tour.jpg && cmp sky.hdr sky_tour.hdr
}

exposures_vbs() {
    in_folder exposures_vbs
    script vbscript/exposures.vbs sky.hdr . && prints 'sky.hdr: 768 x 384 pixels' &&
        are_bitmaps sky_14.bmp sky_16.bmp sky_18.bmp sky_auto.bmp &&
        are_jpegs sky_14.jpg sky_16.jpg sky_18.jpg sky_auto.jpg
}

exposures_vbs_of_no_picture() {
    in_folder exposures_vbs_of_no_picture
    echo "no picture" >broken.hdr
    script vbscript/exposures.vbs broken.hdr . && prints 'error 1 from CVrxHDR::Import: File Type Wrong!'
}

folder_to_jpg_vbs() {
    in_folder folder_to_jpg_vbs
    cp sky.hdr evening.HDR
    echo "no picture" >broken.hdr
    script vbscript/folder_to_jpg.vbs . 15 80 &&
        prints '2 written, 1 failed' 'broken.hdr: error 1, File Type Wrong!' &&
        are_jpegs sky.jpg evening.jpg && [[ ! -e broken.jpg ]]
}

bmp_samples_vbs() {
    in_folder bmp_samples_vbs
    script vbscript/exposures.vbs sky.hdr . && script vbscript/blur.vbs sky_16.bmp . &&
        are_bitmaps sky_16_blurred.bmp sky_16_smooth.bmp && are_jpegs sky_16_blurred.jpg &&
        script vbscript/bmp_to_jpg.vbs sky_16.bmp small.jpg 10 && prints 'wrote small.jpg' && are_jpegs small.jpg
}

patterns() {
    in_folder patterns
    script vbscript/pattern_ramp.vbs ramp.bmp && prints 'wrote ramp.bmp: 512 x 64 pixels' && are_bitmaps ramp.bmp &&
        script jscript/pattern_palette.js '0-255;1000-16711680;' 3 &&
        prints "0"$'\t'"#FF0000"$'\t'"255 0 0" "1"$'\t'"#800080"$'\t'"128 0 128" "2"$'\t'"#0000FF"$'\t'"0 0 255"
}

paths_and_keys() {
    in_folder paths_and_keys
    local language
    for language in vbscript/paths_and_keys.vbs jscript/paths_and_keys.js; do
        script "$language" 'C:\Work\Img\a.hdr' 'c:\work\Pat' &&
            prints 'relative:  ../Img/a.hdr' 'absolute:  c:\work\Img\a.hdr' 'name:      a' "folder:    C:\\Work\\Img\\" \
                'step 1:    pictures' 'key part:  3' 'below C: alone: error 79, Path not found!' || return
    done
}

tour_cpp() {
    in_folder tour_cpp
    program tour sky.hdr . &&
        prints '768 x 384' "colour 0: &H${steps[0]}" "colour 1: &H${steps[1]}" "colour 2: &H${steps[2]}" \
            "colour 3: &H${steps[3]}" "colour 4: &H${steps[4]}" 'error 1 from CVrxHDR::Import: File Type Wrong!' &&
        are_bitmaps tour_cpp.bmp && are_jpegs tour_cpp.jpg && cmp sky.hdr tour_cpp.hdr
}

# Four pictures of 192 x 96 pixels and three gaps of 8: 792 columns, 2376 bytes a row.
contact_sheet_cpp() {
    in_folder contact_sheet_cpp
    program contact_sheet sky.hdr sheet.bmp && prints 'wrote sheet.bmp: 792 x 96 pixels' && are_bitmaps sheet.bmp &&
        [[ $(stat -c %s sheet.bmp) == $((54 + 2376 * 96)) ]]
}

# 384 rows: refreshes with rows 0, 80, 160, 240 and 320, and one at the end.
preview_with_cancel_cpp() {
    in_folder preview_with_cancel_cpp
    program preview_with_cancel sky.hdr 100 && prints_as_shown cpp/preview_with_cancel.cpp &&
        diff printed <(printf '%s\n' 'header: 768 x 384' 'refresh '{1..6} finished complete) &&
        program preview_with_cancel sky.hdr 2 &&
        diff printed <(printf '%s\n' 'header: 768 x 384' 'refresh '{1..3} finished 'ended early')
}

# A user clicks the picture and closes the form.
preview_form_cpp() {
    in_folder preview_form_cpp
    in_wine 240 "$build/win$bits/bin/dialog_user.exe" 'click:Preview form' 'Preview form' >user 2>&1 &
    program preview_form sky.hdr && wait $! && prints_as_shown cpp/preview_form.cpp && prints '768 x 384' closed ||
        { cat user && return 1; }
}

black_and_white_cpp() {
    in_folder black_and_white_cpp
    script vbscript/exposures.vbs sky.hdr . && program black_and_white sky_16.bmp two_colours.bmp 100 &&
        are_bitmaps two_colours.bmp && [[ $(tail -c +55 two_colours.bmp | od -An -v -tx1 -w1 | sort -u | tr -d ' \n') == 00ff ]]
}

# A user opens the first file in the load dialogs and closes every other window.
all_dialogs_vbs() {
    in_folder all_dialogs_vbs
    script vbscript/exposures.vbs sky.hdr . && cp printed exposures && mv sky_16.jpg a.jpg && rm sky_*
    script vbscript/all_dialogs.vbs "$(windows_path .)" &
    in_wine 240 "$build/win$bits/bin/dialog_user.exe" 'open:Load HDR Picture' Viewer 'Save HDR' 'open:Load Picture' Viewer \
        'Save Picture' Pattern Dialogs >user 2>&1 || cat user
    wait $!
    prints "load HDR: $(windows_path sky.hdr)" 'zoom HDR: closed' 'save HDR: closed' "load image: $(windows_path a.jpg)" \
        'zoom image: closed' 'save image: closed' &&
        grep -qE '^pattern: 0-255;[0-9]+-16777215;1000-16711680;$' printed && prints_as_shown vbscript/all_dialogs.vbs
}

# usage SAMPLE... - whether each script tells how it is called when it is called without arguments.
usage() {
    in_folder usage
    local file
    for file in "$@"; do
        script "$file"
        grep -q "^usage: ${file##*/}" printed || { echo "$file tells no usage" && return 1; }
    done
}

start_package_session "$bits"
say "Samples, $bits bits"
run_regsvr32
cp "$installed/samples/pictures/sky.hdr" "$throwaway_folder"

check "first_steps.vbs" first_steps_vbs
check "the README's first script as it stands" readme_command
check "the examples of the reference print what they show" reference_vbs
check "tour.vbs" tour_vbs
check "exposures.vbs" exposures_vbs
check "exposures.vbs of no picture" exposures_vbs_of_no_picture
check "folder_to_jpg.vbs" folder_to_jpg_vbs
check "blur.vbs and bmp_to_jpg.vbs" bmp_samples_vbs
check "pattern_ramp.vbs and pattern_palette.js" patterns
check "paths_and_keys.vbs and paths_and_keys.js" paths_and_keys
check "tour.cpp" tour_cpp
check "contact_sheet.cpp" contact_sheet_cpp
check "preview_with_cancel.cpp" preview_with_cancel_cpp
check "preview_form.cpp" preview_form_cpp
check "black_and_white.cpp" black_and_white_cpp
check "all_dialogs.vbs" all_dialogs_vbs
check "scripts tell how they are called" usage vbscript/reference/{CVrxHDR,CVrxImage,ImageFX,VrxPreviewImg}.vbs vbscript/{tour,exposures,folder_to_jpg,blur,bmp_to_jpg,pattern_ramp,events}.vbs
