// Where the page begins: it opens its data and shows what the address asks for.

/** @returns {string | null} what the browser lacks */
function _missing() {
  if (typeof DecompressionStream !== 'function') return 'DecompressionStream';
  if (typeof Object.hasOwn !== 'function') return 'Object.hasOwn';
  return null;
}

/** @param {string} heading @param {...string} sentences */
function _complain(heading, ...sentences) {
  document.documentElement.dataset.state = 'failed';
  clear(byId('message')).append(element('div', {class: 'notice'}, element('h1', null, heading),
    ...sentences.map((sentence) => element('p', null, sentence))));
}

/** @returns {Meta} */
function _meta() {
  const meta = JSON.parse(byId('report').textContent ?? '');
  if (meta.format !== 1) throw new DamagedReport(`its format is ${meta.format}, and the page knows format 1`);
  return meta;
}

async function _start() {
  byId('too-old').remove();
  const lacking = _missing();
  if (lacking) {
    _complain('This browser is too old',
      `It has no ${lacking}. Please open the file in a Chrome, Edge, Firefox or Safari from 2023 or later.`);
    return;
  }
  try {
    const meta = _meta();
    byId('name').textContent = shorten(visible(meta.title), 60);
    byId('message').append(element('p', {class: 'loading'}, `Opening ${counted(meta.rows, 'N-gram')} …`));
    await nextTurn();
    await openReport(meta);
  } catch (error) {
    _complain('This report cannot be opened',
      'Its data are damaged: perhaps the file was cut on its way. Please ask for it again, or make it anew.',
      `What went wrong: ${String(error instanceof Error ? error.message : error).replace(/\.$/, '')}.`);
    return;
  }
  const {name, version} = report.meta.program;
  byId('foot').textContent = `Made by ${name} ${version}. This page works without a network.`;
  byId('skip').addEventListener('click', (event) => {
    event.preventDefault();
    byId('main').focus();
  });
  wordIndex = new WordIndex();
  wordIndex.foldMore();
  new SearchField();
  clear(byId('message'));
  startRouter();
  document.documentElement.dataset.state = 'ready';
  await wordIndex.foldAll();
}

void _start();
