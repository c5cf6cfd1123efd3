// The address of what is on the screen: "#lemma=rain&sort=logDice". The first key names the view. Every state has an address,
// so it can be sent, and the back button works. A plus sign in it is a plus sign.

/** @typedef {Record<string, string>} Query what an address says, by key */
/**
 * @typedef {object} View
 * @property {(parameters: Query) => string} title goes into the title of the window
 * @property {(container: HTMLElement, parameters: Query) => void} show fills the empty container
 */

/** @type {Map<string, View>} */
const _views = new Map();
const _startView = 'start';
/** @type {Map<string, number>} where an entry of the history was scrolled to, by its key */
const _scrolledTo = new Map();
let _shownView = '';
let _shownSubject = '';
let _entry = '';

/**
 * Makes a view known. The view "start" is what is shown without an address.
 * @param {string} name
 * @param {View} view
 */
function registerView(name, view) {
  _views.set(name, view);
}

/** @param {string} text */
function _encoded(text) {
  const sound = text.toWellFormed ? text.toWellFormed() : text;  // halves of signs cannot be encoded
  return encodeURIComponent(sound).replace(/%(?:2B|2C|2F|3A|3D|2A)/g, decodeURIComponent);
}

/** @param {string} text */
function _decoded(text) {
  try {
    return decodeURIComponent(text);
  } catch {
    return text;  // somebody has typed a percent sign
  }
}

/**
 * The address of a view. What is null, undefined or empty is left out.
 * @param {string} name
 * @param {Record<string, string | number | null | undefined>} [parameters] its own subject under its own name
 * @returns {string} with the leading #
 */
function address(name, parameters = {}) {
  if (name === _startView) return '#';
  /** @param {string} key @param {string | number | null | undefined} value */
  const part = (key, value) => `${_encoded(key)}=${_encoded(String(value))}`;
  const subject = parameters[name];
  const parts = [subject === undefined || subject === null ? name : part(name, subject)];
  for (const [key, value] of Object.entries(parameters))
    if (key !== name && value !== null && value !== undefined && value !== '') parts.push(part(key, value));
  return `#${parts.join('&')}`;
}

/**
 * What the address bar says now.
 * @returns {{name: string, parameters: Query}}
 */
function here() {
  /** @type {Query} */
  const parameters = Object.create(null);
  const parts = location.hash.slice(1).split('&').filter((part) => part !== '');
  for (const part of parts) {
    const equals = part.indexOf('=');
    const key = _decoded(equals < 0 ? part : part.slice(0, equals));
    parameters[key] = equals < 0 ? '' : _decoded(part.slice(equals + 1));
  }
  const name = parts.length === 0 ? _startView : Object.keys(parameters)[0];
  return {name: _views.has(name) ? name : _startView, parameters};
}

/**
 * Goes to a view, as a link to its address would.
 * @param {string} name
 * @param {Record<string, string | number | null | undefined>} [parameters]
 * @param {{replace?: boolean}} [how] replace: the back button will not come back to what is shown now
 */
function go(name, parameters, how = {}) {
  const target = address(name, parameters);
  if (how.replace) {
    note(name, parameters);
    _show();
  } else if (target === (location.hash || '#')) {
    _show();
  } else {
    location.hash = target;
  }
}

/**
 * Writes another address for what is already on the screen, and shows nothing anew.
 * @param {string} name
 * @param {Record<string, string | number | null | undefined>} [parameters]
 */
function note(name, parameters) {
  _rewrite(address(name, parameters));
  document.title = _titleOf(here());
}

/**
 * Gives this entry of the history another address. Browsers refuse that when it happens very often, and in the preview of a
 * mail; then the address stays what it was.
 * @param {string} [to] the one that it has when nothing is given
 */
function _rewrite(to) {
  try {
    history.replaceState({entry: _entry}, '', to);
  } catch (error) {
    if (!(error instanceof DOMException)) throw error;
  }
}

/**
 * The title of the window. Nothing there keeps one text's marks of direction from turning the next one around, so they are left
 * out.
 * @param {{name: string, parameters: Query}} here
 */
function _titleOf({name, parameters}) {
  const title = (_views.get(name)?.title(parameters) ?? '').replace(/[\u202a-\u202e\u2066-\u2069]/g, '');
  return [shorten(visible(title), 60), report.meta.title].filter((text) => text && text !== '(empty)').join(' – ');
}

/** Marks the view in the navigation. @param {string} name */
function _markInNavigation(name) {
  const tab = name === 'lemma' || name === 'ngram' ? _startView : name;
  for (const link of document.querySelectorAll('#navigation a')) {
    if (link.getAttribute('data-view') === tab) link.setAttribute('aria-current', name === tab ? 'page' : 'true');
    else link.removeAttribute('aria-current');
  }
}

/** Shows what the address says. Inside one view the focus and the place stay; in another one they begin at its heading. */
function _show() {
  const {name, parameters} = here();
  const container = byId('view');
  const subject = parameters[name] ?? '';
  const isSame = name === _shownView && subject === _shownSubject;
  const isFirst = _shownView === '';
  const focused = container.contains(document.activeElement) ? document.activeElement?.id : '';
  const known = _scrolledTo.get(history.state?.entry);
  const place = isSame ? window.scrollY : known ?? 0;
  container.dataset.view = name;
  clear(container);
  try {
    _views.get(name)?.show(container, parameters);
  } catch (error) {
    console.error(error);
    clear(container).append(element('div', {class: 'notice'}, element('h1', null, 'This cannot be shown'),
      element('p', null,
        `The data of the report do not fit together, or the page is wrong: ${error instanceof Error ? error.message : error}.`)));
  }
  document.title = _titleOf({name, parameters});
  _markInNavigation(name);
  _shownView = name;
  _shownSubject = subject;
  _begin();
  const heading = container.querySelector('h1');
  if (heading) heading.tabIndex = -1;
  if (isSame && focused) document.getElementById(focused)?.focus({preventScroll: true});
  else if (!isSame && !isFirst) heading?.focus({preventScroll: true});
  window.scrollTo(0, place);
}

/** Gives the entry of the history a key, by which it remembers its place. */
function _begin() {
  _entry = history.state?.entry ?? `${Date.now()}-${_scrolledTo.size}`;
  if (!_scrolledTo.has(_entry)) _scrolledTo.set(_entry, 0);
  if (history.state?.entry !== _entry) _rewrite();
}

/** The browser scrolls, too, on its way to another entry; that is no place of this one. */
function _rememberPlace() {
  if (history.state?.entry === _entry) _scrolledTo.set(_entry, window.scrollY);
}

/** Begins to follow the address. */
function startRouter() {
  history.scrollRestoration = 'manual';
  addEventListener('hashchange', _show);
  addEventListener('scroll', _rememberPlace, {passive: true});
  _show();
}
