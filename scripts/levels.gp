# Draws data/levels.csv: what each level scores against the one below and against Stockfish's.
set terminal svg size 760,420 font "sans-serif,13" background rgb "white"
set output "docs/levels.svg"
set datafile separator ","
set title "Score of each level of UCI\\_Elo, with 95 per cent error bars"
set xlabel "level"
set ylabel "score, per cent"
set xrange [950:2450]
set yrange [0:100]
set xtics 1000,200,2400
set grid ytics lc rgb "#dddddd"
set key outside bottom center vertical
set object 1 rectangle from 950,65 to 2450,85 fc rgb "#e8f0e8" fs solid noborder behind
Bars(column) = 100 * 1.96 * column
plot "< grep korvane data/levels.csv" using ($1-8):(100*$7):(Bars($8)) with yerrorbars \
         pt 7 ps 0.8 lc rgb "#2060a0" title "against the level 200 below (wanted: the band)", \
     "< grep stockfish data/levels.csv" using ($1+8):(100*$7):(Bars($8)) with yerrorbars \
         pt 5 ps 0.8 lc rgb "#b05020" title "against Stockfish 15.1 at the same UCI\\_Elo"
