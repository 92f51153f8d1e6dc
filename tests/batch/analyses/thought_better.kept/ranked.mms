     2 < Number of models ranked; C-hat for QAICc calculation: 1.500
 Model     -nln[L] #Prms       QAICc      dQAICc     QAIC Wt                            Algorithm file                           Covariance file  Notes>
     1  3.4742E+02     2  4.6724E+02  0.0000E+00     0.50000                                   fit.alg                  No covariance file found  
     2  3.4742E+02     2  4.6724E+02  1.7323E-09     0.50000                                   fit.alg                  No covariance file found  
