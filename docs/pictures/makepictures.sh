#!/usr/bin/env bash
# Makes the pictures of the README: docs/pictures/makepictures.sh PATH-OF-VX3-STUDIO
#
# A project as an artist has it, shown by the studio without a display, in the light and in the dark.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
studio=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

makeProject() { # folder
    mkdir -p "$1"/{models,references,renders,scenes,sounds,textures}
    (
        cd "$1"
        printf 'a brief\n' >'brief from client.pdf'
        for name in kitchen_v011.vx3 kitchen_v012.vx3 'Küche Nacht.vx3'; do head -c 4000 /dev/zero >"$name"; done
        for name in chair.fbx table.lwo lamp.obj sink.3ds; do head -c 2000 /dev/zero >"$name"; done
        for name in oak_diffuse_10 oak_diffuse_2 oak_bump tiles_white tiles_black; do printf 'II*\0' >"$name.tif"; done
        for name in turntable.mp4 walkthrough.mov; do head -c 3000 /dev/zero >"$name"; done
        for name in 'rain on window.wav' kettle.wav; do printf 'RIFF' >"$name"; done
        for name in presets.libvx favourites.catvx; do head -c 500 /dev/zero >"$name"; done
    )
}

makeProject "$work/kitchen"
for look in light dark; do
    "$studio" "$work/kitchen" --profile "$work/profile" "--$look" --size 860x420 --scale 1 --shot "$PWD/window-$look.png"
done
