gnuplot Timing1.plot
gnuplot Timing2.plot
gnuplot Timing3.plot
gnuplot Timing4.plot
gnuplot Timing5.plot
