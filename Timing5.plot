set output 'Timing5.svg
set terminal svg
set multiplot
set grid
set title "Clients duration"
set xlabel "audio cycles"
set ylabel "usec"
plot "/tmp/prof.log" using 10 title "paplay/50" with lines
unset multiplot
unset output
