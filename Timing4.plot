set output 'Timing4.svg
set terminal svg
set multiplot
set grid
set title "Clients scheduling latency"
set xlabel "audio cycles"
set ylabel "usec"
plot "/tmp/prof.log" using 9 title "paplay/50" with lines
unset multiplot
unset output
