set output 'Timing3.svg
set terminal svg
set multiplot
set grid
set title "Clients end date"
set xlabel "audio cycles"
set ylabel "usec"
plot "/tmp/prof.log" using 1 title "Audio period" with lines, "/tmp/prof.log" using 8 title "paplay/50" with lines
unset multiplot
unset output
