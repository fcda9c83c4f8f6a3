% Writes octave4.mat, octave6.mat and octave7.mat: octave --quiet matfiles.m
m = [10 1 2 3; 20 4 5 6; 30 7 8 9];
times = [1 2 4];
values = [5; -3; 300];
odd = [0; NaN; Inf; -Inf; 1.25];
cx = [1+2i; 3-4i];
save -v4 octave4.mat m times values odd cx
s.f = m;
s.t.v = 7;
sa = struct('v', {11 12; 21 22});
n3 = reshape(1:8, [2 2 2]);
e = zeros(0, 3);
i8 = int8([1 2]);
u64 = uint64(3);
sg = single(1.5);
txt = 'text';
lg = [true false];
sp = sparse([0 1; 2 0]);
ce = {1, 'two'};
save -v6 octave6.mat m times values odd cx s sa n3 e i8 u64 sg txt lg sp ce
save -v7 octave7.mat m times values odd cx s sa n3 e i8 u64 sg txt lg sp ce
