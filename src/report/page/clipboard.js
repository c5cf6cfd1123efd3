// Copying a text, also where the browser does not let a page that was opened from disk use its clipboard directly.

/** @param {string} text @returns {Promise<boolean>} whether it is in the clipboard now */
async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    const field = element('textarea', {class: 'unseen', 'aria-hidden': 'true', tabindex: -1});
    field.value = text;
    const before = document.activeElement;
    document.body.append(field);
    field.select();
    const done = document.execCommand('copy');
    field.remove();
    if (before instanceof HTMLElement) before.focus({preventScroll: true});
    return done;
  }
}

/**
 * A button that copies a text and says so for a while.
 * @param {string} label
 * @param {() => string} text asked for when the button is pressed
 * @returns {HTMLElement} the button, and beside it what a screen reader is told
 */
function copyButton(label, text) {
  const said = element('span', {role: 'status', class: 'copied soft small'});
  const button = element('button', {type: 'button', onclick: async () => {
    said.textContent = await copyText(text()) ? 'Copied' : 'The browser does not allow it';
    setTimeout(() => { said.textContent = ''; }, 3000);
  }}, label);
  return element('span', {class: 'copy'}, button, ' ', said);
}
