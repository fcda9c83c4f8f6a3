% One period of a sine in 24 samples, 10 ns apart: as a MAT-file of fractions, and as a text table of 8-bit numbers in
% two's complement with 7 bits behind the point. Run in this folder: octave sine.m
time = (0:10:230)';
sine = 0.95 * sin(2 * pi * time / 240);
save('-v7', 'sine.mat', 'time', 'sine');

table = fopen('sine.txt', 'w');
fprintf(table, 'time sine\n');
for i = 1:numel(time)
    fprintf(table, '%d %s\n', time(i), dec2bin(mod(round(sine(i) * 128), 256), 8));
end
fclose(table);
