# The files of the page, in the order in which they are joined. page.html is what stands in its body; all scripts share one
# scope, a function of their own around them.
set(page_styles
  page.css
)
set(page_scripts
  start.js
)
