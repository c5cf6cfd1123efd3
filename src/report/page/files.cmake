# The files of the page, in the order in which they are joined. page.html is what stands in its body; all scripts share one
# scope, a function of their own around them.
set(page_styles
  style.css
  words.css
)
set(page_scripts
  dom.js
  clipboard.js
  data.js
  sentences.js
  relations.js
  router.js
  meter.js
  word_index.js
  search.js
  home.js
  profile_blocks.js
  profile_block.js
  profile.js
  about.js
  start.js
)
