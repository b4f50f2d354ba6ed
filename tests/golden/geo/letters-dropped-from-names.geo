St P12
Pt D12
Pt P13
Pt DP4
Pt p5
Pt P 6
Pt P
Pt12
St D12
