set output 'Timing1.svg
set terminal svg
set multiplot
set grid
set title "Audio driver timing"
set xlabel "audio cycles"
set ylabel "usec"
plot "/tmp/prof.log" using 3 title "Audio driver delay" with lines, "/tmp/prof.log" using 1 title "Audio period" with lines,"/tmp/prof.log" using 4 title "Audio estimated" with lines
unset multiplot
unset output
