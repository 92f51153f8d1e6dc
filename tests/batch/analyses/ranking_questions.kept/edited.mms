     2 < Number of models ranked
 Model     -nln[L] #Prms        AICc       dAICc      AIC Wt                            Algorithm file                           Covariance file  Notes>
     1  3.5928E+02     2  7.2257E+02  0.0000E+00     1.00000                              constant.alg                              constant.cov  
     2  3.7758E+02     3  7.6118E+02  3.8608E+01     0.00000                                edited.alg                  No covariance file found  not at its minimum
