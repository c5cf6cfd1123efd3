const meta = JSON.parse(document.getElementById('report').textContent);
document.getElementById('main').textContent = `${meta.title}: ${meta.rows} N-grams`;
