     2 < Number of models ranked; C-hat for QAICc calculation: 1.500; C-hat entered since: 3.000
 Model     -nln[L] #Prms       QAICc      dQAICc     QAIC Wt                            Algorithm file                           Covariance file  Notes>
     1  3.4742E+02     2  4.6724E+02   undefined   undefined                                   fit.alg                  No covariance file found  
     2  3.4742E+02     2  4.6724E+02   undefined   undefined                                   fit.alg                  No covariance file found  
