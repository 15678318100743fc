#!/bin/sh
# Makes the sample video: half a minute of a harbour's evening colours and a quiet tone. Needs ffmpeg with libx264.
# The result is kept in the tree; its hash is taken from the file when the starter catalogue is built, so making it anew
# with another ffmpeg is fine.
set -eu
cd "$(dirname "$0")"
out=Harbour.Lights.2019.1080p.BluRay.x264.mkv

font=$(fc-match -f '%{file}' sans:bold 2>/dev/null || true)
title=null
if [ -n "$font" ] && [ -f "$font" ]; then
    title="drawtext=fontfile=$font:text='HARBOUR LIGHTS':fontcolor=white@0.8:fontsize=28:x=(w-tw)/2:y=h*0.74"
    title="$title:alpha='min(1,max(0,(t-1)/2))'"
fi

ffmpeg -y -loglevel error -fflags +bitexact \
    -f lavfi -i "gradients=s=640x360:r=24000/1001:d=30:c0=0x1d3b4f:c1=0xc8703a:c2=0xe9b872:nb_colors=3:x0=320:y0=0:x1=320:y1=360:speed=0.003:seed=7" \
    -f lavfi -i "sine=frequency=196:sample_rate=48000:duration=30" \
    -map 0:v -map 1:a -vf "$title,format=yuv420p" -af "volume=0.06,afade=t=in:d=2,afade=t=out:st=27:d=3" \
    -c:v libx264 -preset veryslow -crf 27 -g 240 -c:a aac -b:a 48k -ac 1 \
    -metadata title="Harbour Lights" -map_metadata -1 -flags:v +bitexact -flags:a +bitexact "$out"
ls -l "$out"
