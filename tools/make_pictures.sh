#!/bin/bash
# Makes docs/pictures from the real windows: the tests of the windows grab them behind each line of the kept analyses.
# Needs a built tree (build/) and ImageMagick.
set -eu
cd "$(dirname "$0")/.."
grabbed=build/screenshots
analyses=tests/batch/analyses

env -u QT_QPA_PLATFORM build/tests/test_ui --gtest_brief=1 --gtest_filter=\
'PlotWindowsTest.*:*EveryFormIsGrabbed*:*Analysis*/first_fit:*Analysis*/field_book:*Analysis*/import:*Analysis*/covariances:*Analysis*/ranking:*Analysis*/editing:*Analysis*/priors:*Analysis*/estimates:*Analysis*/detail_plots:*Analysis*/bootstrap'

# Keeps a grabbed window under a name, without the line of file names below it, which are those of one machine. Few
# colours make a small file of a window without harming it.
keep() {
  convert "$grabbed/$2.png" -crop 1280x640+0+0 +repage -strip +dither -colors 96 -define png:compression-level=9 "docs/pictures/$1.png"
}
# Keeps the window behind the first (or n-th) line of an analysis that fits the pattern.
behind() {
  local line
  line=$(grep -n -m"${5:-1}" -e "$4" "$3/$2.batch" | tail -1 | cut -d: -f1)
  keep "$1" "$2_$line"
}

# Writes the name of a file over its path in a picture, in a field from its left upper to its right lower corner: where
# it stands is one machine's affair, too.
naming() {
  mogrify -fill white -draw "rectangle $3,$4 $5,$(($4 + 18))" -fill black -font DejaVu-Sans -pointsize 13 \
    -annotate "+$3+$(($4 + 13))" "$2" -strip "docs/pictures/$1.png"
}

behind main first_fit examples 'close frmOneFunction'
keep initialize form_frmInitialize
behind import field_book examples 'show frmImport'
naming import field_book.xlsx 136 62 1256
behind initialize_fit field_book examples 'press frmInitialize.cmdFit'
naming initialize_fit field_book.xlsx.dat 45 160 456
behind import_nests import $analyses 'set frmImport.cboRole'
naming import_nests nests.csv 136 62 1256
behind editor editing $analyses 'type grdVS'
behind one_function first_fit examples 'save-text frmOneFunction'
behind simplex first_fit examples 'save-text frmSimplex'
behind covariance covariances $analyses 'save-text frmCovData'
behind summary bootstrap $analyses 'save-text frmSummary'
behind priors priors $analyses 'select frmSetPriors.grdPriors 8'
behind profile estimates $analyses 'save-plot frmDistPlot confidence'
behind posterior estimates $analyses 'show frmDistPlot' 3
behind rank ranking $analyses 'press frmRank.cmdAverage'
behind xy_plot detail_plots $analyses 'save-plot frmXYPlot observed'
keep bivariate plot_bivariate
